// What an object that stands in for a driver says of the paths that a program opens.
// open_functions.cpp replaces every function that opens, and asks here.
#pragma once

// Whether the path, spelled so, is the driver's. It may be null.
bool IsDriver(const char* path);

// Such a path, opened: a descriptor, or -1 and errno.
int OpenDriver(const char* path, int flags);
