#include "boards/preload/preloading.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

std::string PathOf(const std::string& library) {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    const std::filesystem::path folder = program.parent_path() / MORVA_LIBRARIES_FROM_PROGRAM;
    return (folder / library).lexically_normal().string();
}

}  // namespace

std::runtime_error SystemError(const std::string& what) {
    return std::runtime_error(what + ": " + std::generic_category().message(errno));
}

int KeepOutOfTheWay(int fd) {
    constexpr rlim_t OUT_OF_THE_WAY = 512;
    rlimit limit = {};
    int kept = -1;
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        kept = ::fcntl(fd, F_DUPFD, static_cast<int>(std::min(OUT_OF_THE_WAY, limit.rlim_cur / 2)));
    }
    const int error = errno;
    ::close(fd);
    errno = error;
    return kept;
}

std::string NameOfDescriptor(int fd) {
    return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(fd);
}

void Preload(const std::string& library) {
    const std::string object = PathOf(library);
    int fd = ::open(object.c_str(), O_RDONLY);
    if (fd < 0) {
        throw SystemError("cannot preload " + object);
    }
    // The loader takes blanks and colons to separate names.
    std::string objects = object;
    if (object.find_first_of(" \t\n:") == std::string::npos) {
        ::close(fd);
    } else {
        fd = KeepOutOfTheWay(fd);
        if (fd < 0) {
            throw SystemError("cannot preload " + object);
        }
        objects = NameOfDescriptor(fd);
    }
    if (const char* others = std::getenv("LD_PRELOAD")) {
        objects += std::string(":") + others;
    }
    ::setenv("LD_PRELOAD", objects.c_str(), 1);
}
