#include "host/image_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "framework/file_descriptor.h"
#include "host/hex_dump.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

[[noreturn]] void ThrowLastError(const std::string& name) {
    throw CUsageError(name + ": " + std::generic_category().message(errno));
}

std::string ReadToEnd(int file, const std::string& name) {
    std::string contents;
    std::string part(size_t{1} << 16, '\0');
    for (;;) {
        const ssize_t count = ::read(file, part.data(), part.size());
        if (count == 0) {
            return contents;
        }
        if (count < 0 && errno != EINTR) {
            ThrowLastError(name);
        }
        if (count > 0) {
            contents.append(part, 0, static_cast<size_t>(count));
        }
        if (contents.size() > MAX_IMAGE_SIZE) {
            throw CUsageError(name + ": more than 1 MiB, no image of an EEPROM");
        }
    }
}

}  // namespace

std::vector<uint8_t> ReadImage(const std::string& path) {
    if (path == "-") {
        return ImageOf(ReadToEnd(STDIN_FILENO, "standard input"), "standard input");
    }
    const std::string name = Printable(path);
    // Without waiting, or a pipe nobody writes to would hold the program.
    const CFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat info {};
    if (!file.IsOpen() || ::fstat(file.Get(), &info) != 0) {
        ThrowLastError(name);
    }
    if (!S_ISREG(info.st_mode)) {
        throw CUsageError(name + (S_ISDIR(info.st_mode)
                                      ? " is a directory"
                                      : " is not a plain file; - reads standard input"));
    }
    return ImageOf(ReadToEnd(file.Get(), name), name);
}

std::vector<uint8_t> ImageOf(std::string_view contents, const std::string& name) {
    if (contents.empty()) {
        throw CUsageError(name + " is empty");
    }
    if (IsWideText(contents)) {
        throw CUsageError(name + " is UTF-16 text; save it as UTF-8 or ASCII");
    }
    if (IsText(contents)) {
        return BytesOfDump(contents, name);
    }
    return {contents.begin(), contents.end()};
}
