#include "boards/i2c_sim/adapter_socket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "boards/i2c_sim/sim_protocol.h"

namespace {

// A request with the most and longest messages is one packet. The kernel doubles this.
constexpr int SEND_BUFFER = 212'992;
static_assert(size_t{2} * SEND_BUFFER > MAX_REQUEST_SIZE);

constexpr unsigned int LAST_NUMBER = 1U << 20;  // of a device file's minor number

// Why an adapter is not there, as the open of a device file would tell it.
int Meaning(int error) {
    return error == ECONNREFUSED ? ENODEV : error;
}

}  // namespace

std::optional<unsigned int> AdapterNumber(const char* text) {
    if (*text == '\0' || (text[0] == '0' && text[1] != '\0')) {
        return std::nullopt;
    }
    unsigned int number = 0;
    for (; *text != '\0'; ++text) {
        if (*text < '0' || *text > '9' || number >= LAST_NUMBER / 10) {
            return std::nullopt;
        }
        number = 10 * number + static_cast<unsigned int>(*text - '0');
    }
    return number;
}

int OpenAdapter(unsigned int number, bool close_on_exec) {
    const char* folder = std::getenv(SIM_FOLDER_VARIABLE);
    if (folder == nullptr) {
        return -ENODEV;
    }
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const int size = std::snprintf(address.sun_path, sizeof address.sun_path, "%s%s%u", folder,
                                   SIM_SOCKETS, number);
    if (size < 0 || static_cast<size_t>(size) >= sizeof address.sun_path) {
        return -ENAMETOOLONG;
    }
    const int fd = ::socket(AF_UNIX, SOCK_SEQPACKET | (close_on_exec ? SOCK_CLOEXEC : 0), 0);
    if (fd < 0) {
        return -errno;
    }
    ::setsockopt(fd, SOL_SOCKET, SO_SNDBUF, &SEND_BUFFER, sizeof SEND_BUFFER);
    int connected = -1;
    do {
        connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    } while (connected != 0 && errno == EINTR);
    if (connected != 0) {
        const int error = errno;
        ::close(fd);
        return -Meaning(error);
    }
    return fd;
}

std::optional<unsigned int> AdapterOf(int fd) {
    const int before = errno;
    sockaddr_un address = {};
    socklen_t size = sizeof address - 1;  // the path always ends with a zero
    const bool is_socket = ::getpeername(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    errno = before;
    if (!is_socket || address.sun_family != AF_UNIX) {
        return std::nullopt;
    }
    const char* folder = std::getenv(SIM_FOLDER_VARIABLE);
    if (folder == nullptr) {
        return std::nullopt;
    }
    const char* rest = address.sun_path;
    for (const char* start : {folder, SIM_SOCKETS}) {
        const size_t length = std::strlen(start);
        if (std::strncmp(rest, start, length) != 0) {
            return std::nullopt;
        }
        rest += length;
    }
    return AdapterNumber(rest);
}
