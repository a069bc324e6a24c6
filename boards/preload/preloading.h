// For a switch, a program that runs a command with an object preloaded.
#pragma once

#include <stdexcept>
#include <string>

// What a switch ends with when COMMAND does not say it, as env and its kind have them.
inline constexpr int SWITCH_FAILED = 125;
inline constexpr int SWITCH_CANNOT_RUN = 126;
inline constexpr int SWITCH_NOT_FOUND = 127;

// "WHAT: REASON", with the reason that errno gives.
std::runtime_error SystemError(const std::string& what);

// Scripts open the low numbers and shells take those up to 255 for their own: what COMMAND
// has to keep open gets a number above, as far as its limit allows. -1 and errno when it
// cannot have one; `fd` is closed in any case.
int KeepOutOfTheWay(int fd);

// A name of a descriptor that serves all processes while this one keeps it open.
std::string NameOfDescriptor(int fd);

// Lets every program that is started from now on have the library of that file name. It
// is found by the way from the program, which is the same in the build tree as where it is
// installed. Throws std::runtime_error, naming the file, when it cannot be had.
void Preload(const std::string& library);
