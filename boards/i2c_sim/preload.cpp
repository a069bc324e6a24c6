// The object that morva-i2c-sim preloads. It stands in for the kernel's i2c-dev: opening
// /dev/i2c-N or /dev/i2c/N, spelled so, gives a descriptor of a simulated adapter, on which
// the requests of linux/i2c-dev.h, read() and write() work. The descriptor is a socket,
// connected with the process that holds the adapters; how it is known again is whom it is
// connected with, so duplicates and inherited ones are known as well, and nothing needs to
// be remembered. Whatever is not an adapter's goes on untouched.
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <optional>

#include "boards/i2c_sim/adapter_call.h"
#include "boards/i2c_sim/adapter_socket.h"
#include "boards/i2c_sim/sim_protocol.h"
#include "boards/i2c_sim/smbus_data.h"
#include "boards/preload/next_function.h"
#include "boards/preload/open_functions.h"

namespace {

using CIoctl = int (*)(int, unsigned long, ...);
using CRead = ssize_t (*)(int, void*, size_t);
using CWrite = ssize_t (*)(int, const void*, size_t);
using CCheckedRead = ssize_t (*)(int, void*, size_t, size_t);

constinit CNext<CIoctl> next_ioctl("ioctl");
constinit CNext<CRead> next_read("read");
constinit CNext<CWrite> next_write("write");
constinit CNext<CCheckedRead> next_read_chk("__read_chk");

int Fail(int error) {
    errno = error;
    return -1;
}

// As a system call returns it.
long Returned(long result) {
    return result < 0 ? Fail(static_cast<int>(-result)) : result;
}

// The adapter's number in the paths that name one.
std::optional<unsigned int> NumberIn(const char* path) {
    for (const char* start : {"/dev/i2c-", "/dev/i2c/"}) {
        const size_t size = std::strlen(start);
        if (path != nullptr && std::strncmp(path, start, size) == 0) {
            return AdapterNumber(path + size);
        }
    }
    return std::nullopt;
}

int Transfer(CAdapterCall& call, const i2c_rdwr_ioctl_data* data) {
    if (data == nullptr) {
        return -EFAULT;
    }
    if (data->msgs == nullptr || data->nmsgs == 0 || data->nmsgs > MAX_MESSAGES) {
        return -EINVAL;
    }
    std::array<sim_message_t, MAX_MESSAGES> messages;
    call.SetMessages(data->nmsgs);
    call.Send(messages.data(), data->nmsgs * sizeof(sim_message_t));
    for (size_t i = 0; i < data->nmsgs; ++i) {
        const i2c_msg& msg = data->msgs[i];
        if (msg.len > MAX_MESSAGE_SIZE) {
            return -EINVAL;
        }
        messages[i] = {msg.addr, msg.flags, msg.len};
        if ((msg.flags & I2C_M_RD) != 0) {
            call.Receive(msg.buf, msg.len);
        } else {
            call.Send(msg.buf, msg.len);
        }
    }
    return static_cast<int>(call.Do());
}

int Smbus(CAdapterCall& call, const i2c_smbus_ioctl_data* data) {
    if (data == nullptr) {
        return -EFAULT;
    }
    sim_smbus_t request = {};
    request.size = data->size;
    request.read_write = data->read_write;
    request.command = data->command;
    request.has_data = data->data != nullptr ? 1 : 0;
    const size_t size = SmbusDataSize(data->size);
    if (data->data != nullptr && IsSmbusDataRead(data->size, data->read_write)) {
        std::memcpy(&request.data, data->data, size);
    }
    i2c_smbus_data answer = {};
    call.Send(&request, sizeof request);
    call.Receive(&answer, sizeof answer);
    const long result = call.Do();
    if (result == 0 && data->data != nullptr && IsSmbusDataWritten(data->size, data->read_write)) {
        std::memcpy(data->data, &answer, size);
    }
    return static_cast<int>(result);
}

int Request(int fd, unsigned int adapter, unsigned long code, void* argument) {
    CAdapterCall call(fd, adapter, static_cast<uint32_t>(code));
    switch (code) {
        case I2C_RDWR:
            return Transfer(call, static_cast<const i2c_rdwr_ioctl_data*>(argument));
        case I2C_SMBUS:
            return Smbus(call, static_cast<const i2c_smbus_ioctl_data*>(argument));
        case I2C_FUNCS: {
            if (argument == nullptr) {
                return -EFAULT;
            }
            const long result = call.Do();
            if (result == 0) {
                *static_cast<unsigned long*>(argument) = call.Value();
            }
            return static_cast<int>(result);
        }
        default:
            call.SetArgument(reinterpret_cast<uintptr_t>(argument));
            return static_cast<int>(call.Do());
    }
}

long ReadPlain(int fd, unsigned int adapter, void* to, size_t size) {
    CAdapterCall call(fd, adapter, SIM_READ);
    size = std::min(size, MAX_MESSAGE_SIZE);
    call.SetArgument(size);
    call.Receive(to, size);
    return call.Do();
}

long WritePlain(int fd, unsigned int adapter, const void* from, size_t size) {
    CAdapterCall call(fd, adapter, SIM_WRITE);
    call.Send(from, std::min(size, MAX_MESSAGE_SIZE));
    return call.Do();
}

// All that i2c-dev could have a meaning for.
bool IsRequest(unsigned long code) {
    constexpr unsigned long FIRST = 0x0700;
    constexpr unsigned long LAST = 0x07FF;
    return code >= FIRST && code <= LAST;
}

}  // namespace

bool IsDriver(const char* path) {
    return NumberIn(path).has_value();
}

int OpenDriver(const char* path, int flags) {
    // Debian's kernel makes no folder /dev/i2c, and programs look there first.
    if (std::strncmp(path, "/dev/i2c/", std::strlen("/dev/i2c/")) == 0) {
        return Fail(ENOENT);
    }
    return static_cast<int>(Returned(OpenAdapter(*NumberIn(path), (flags & O_CLOEXEC) != 0)));
}

EXPORTED int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (IsRequest(request)) {
        if (const std::optional<unsigned int> adapter = AdapterOf(fd)) {
            return static_cast<int>(Returned(Request(fd, *adapter, request, argument)));
        }
    }
    return next_ioctl.Get()(fd, request, argument);
}

EXPORTED ssize_t read(int fd, void* to, size_t size) {
    const std::optional<unsigned int> adapter = AdapterOf(fd);
    return adapter ? Returned(ReadPlain(fd, *adapter, to, size)) : next_read.Get()(fd, to, size);
}

EXPORTED ssize_t write(int fd, const void* from, size_t size) {
    const std::optional<unsigned int> adapter = AdapterOf(fd);
    return adapter ? Returned(WritePlain(fd, *adapter, from, size))
                   : next_write.Get()(fd, from, size);
}

// What a program calls that is compiled with _FORTIFY_SOURCE.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
EXPORTED ssize_t __read_chk(int fd, void* to, size_t size, size_t room) {
    const std::optional<unsigned int> adapter = size <= room ? AdapterOf(fd) : std::nullopt;
    return adapter ? Returned(ReadPlain(fd, *adapter, to, size))
                   : next_read_chk.Get()(fd, to, size, room);
}
