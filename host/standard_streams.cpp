#include "host/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

// Occupies the standard descriptors that the caller left closed, or files opened
// later would be taken for them. Reading ends at once, writing fails.
void OccupyStandardDescriptors() {
    int fd = 0;
    do {
        fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    } while (fd >= 0 && fd <= STDERR_FILENO);
    if (fd >= 0) {
        ::close(fd);
    }
}

CStream TakeStandardOutput() {
    const int fd = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    CStream stream(fd < 0 ? nullptr : ::fdopen(fd, "w"));
    if (stream == nullptr || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
    return stream;
}
