#include "boards/preload/open_functions.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdarg>

#include "boards/preload/next_function.h"

namespace {

using COpen = int (*)(const char*, int, ...);
using COpenAt = int (*)(int, const char*, int, ...);
using CCheckedOpen = int (*)(const char*, int);
using CCheckedOpenAt = int (*)(int, const char*, int);

constinit CNext<COpen> next_open("open");
constinit CNext<COpen> next_open64("open64");
constinit CNext<COpenAt> next_openat("openat");
constinit CNext<COpenAt> next_openat64("openat64");
constinit CNext<CCheckedOpen> next_open_2("__open_2");
constinit CNext<CCheckedOpen> next_open64_2("__open64_2");
constinit CNext<CCheckedOpenAt> next_openat_2("__openat_2");
constinit CNext<CCheckedOpenAt> next_openat64_2("__openat64_2");

// The third argument of an open is there only if the flags ask for it.
mode_t ModeOf(int flags, va_list arguments) {
    const bool has_mode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return has_mode ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

EXPORTED int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(path, flags) : next_open.Get()(path, flags, mode);
}

EXPORTED int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(path, flags) : next_open64.Get()(path, flags, mode);
}

EXPORTED int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(path, flags) : next_openat.Get()(folder, path, flags, mode);
}

EXPORTED int openat64(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(path, flags)
                          : next_openat64.Get()(folder, path, flags, mode);
}

// What a program calls that is compiled with _FORTIFY_SOURCE.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
EXPORTED int __open_2(const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(path, flags) : next_open_2.Get()(path, flags);
}

EXPORTED int __open64_2(const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(path, flags) : next_open64_2.Get()(path, flags);
}

EXPORTED int __openat_2(int folder, const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(path, flags) : next_openat_2.Get()(folder, path, flags);
}

EXPORTED int __openat64_2(int folder, const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(path, flags) : next_openat64_2.Get()(folder, path, flags);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
