// The descriptors that a program is started with.
#pragma once

#include <cstdio>
#include <memory>

struct CStreamCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using CStream = std::unique_ptr<std::FILE, CStreamCloser>;

// Occupies the standard descriptors that the caller left closed, or files opened
// later would be taken for them. Reading ends at once, writing fails.
void OccupyStandardDescriptors();

// Takes standard output for a report alone: what the program prints there from
// now on goes to standard error. Throws std::system_error.
CStream TakeStandardOutput();
