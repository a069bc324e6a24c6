// The object that morva-mdio-sim preloads. It stands in for the driver
// "/dev/fsl-fman_xmdio_us": opening that path, spelled so, gives a descriptor of the
// simulated bus, on which the two requests of the driver work. The descriptor is a file's,
// so everything else that programs do with descriptors needs no help from here; how it is
// known again is its name, so duplicates and inherited ones are known as well, and nothing
// needs to be remembered. Whatever is not the driver's goes on untouched.
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "boards/mdio_sim/phy_bus.h"
#include "boards/mdio_sim/sim_environment.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

constexpr const char* DRIVER = "/dev/fsl-fman_xmdio_us";

// The function of the same name that the program would have without this object. May be
// looked up twice when two threads meet, which gives the same.
template <class Function>
class CNext {
  public:
    explicit constexpr CNext(const char* name) : m_name(name) {}

    Function Get() {
        Function function = m_function.load(std::memory_order_relaxed);
        if (function == nullptr) {
            function = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, m_name));
            m_function.store(function, std::memory_order_relaxed);
        }
        return function;
    }

  private:
    const char* const m_name;
    std::atomic<Function> m_function = nullptr;
};

using COpen = int (*)(const char*, int, ...);
using COpenAt = int (*)(int, const char*, int, ...);
using CCheckedOpen = int (*)(const char*, int);
using CCheckedOpenAt = int (*)(int, const char*, int);
using CIoctl = int (*)(int, unsigned long, ...);

constinit CNext<COpen> next_open("open");
constinit CNext<COpen> next_open64("open64");
constinit CNext<COpenAt> next_openat("openat");
constinit CNext<COpenAt> next_openat64("openat64");
constinit CNext<CCheckedOpen> next_open_2("__open_2");
constinit CNext<CCheckedOpen> next_open64_2("__open64_2");
constinit CNext<CCheckedOpenAt> next_openat_2("__openat_2");
constinit CNext<CCheckedOpenAt> next_openat64_2("__openat64_2");
constinit CNext<CIoctl> next_ioctl("ioctl");

int Fail(int error) {
    errno = error;
    return -1;
}

bool IsDriver(const char* path) {
    return path != nullptr && std::strcmp(path, DRIVER) == 0;
}

// The error number with which it is to fail, or 0. A wrong one, set after the switch has
// looked, must not pass for none.
int FaultOf(const char* variable) {
    const std::optional<int> fault = FaultFrom(variable);
    if (!fault) {
        TellWrongFault(variable);
    }
    return fault.value_or(EINVAL);
}

int OpenDriver(int flags) {
    if (const int fault = FaultOf(OPEN_FAULT_VARIABLE)) {
        return Fail(fault);
    }
    const char* bus = std::getenv(BUS_VARIABLE);
    if (bus == nullptr) {
        return Fail(ENODEV);
    }
    return next_open.Get()(bus, O_RDWR | (flags & O_CLOEXEC));
}

bool IsDescriptorOfDriver(int fd) {
    std::array<char, 32> link;
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", fd);
    std::array<char, 64> name;
    const int error = errno;
    const ssize_t size = ::readlink(link.data(), name.data(), name.size());
    errno = error;
    std::array<char, 64> wanted;
    std::snprintf(wanted.data(), wanted.size(), "/memfd:%s (deleted)", BUS_NAME);
    return size > 0 && std::string_view(name.data(), static_cast<size_t>(size)) == wanted.data();
}

int Access(int fd, unsigned long request, mii_ioctl_data* record) {
    if (const int fault = FaultOf(ACCESS_FAULT_VARIABLE)) {
        return Fail(fault);
    }
    if (record == nullptr) {
        return Fail(EFAULT);
    }
    if (record->reg_num >= CPhy::REGISTERS) {
        return Fail(EINVAL);
    }
    void* memory = ::mmap(nullptr, sizeof(CPhyBus), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) {
        return -1;
    }
    auto& bus = *static_cast<CPhyBus*>(memory);
    if (request == SIOCGMIIREG) {
        record->val_out = bus.Read(record->phy_id, record->reg_num);
    } else {
        bus.Write(record->phy_id, record->reg_num, record->val_in);
    }
    ::munmap(memory, sizeof(CPhyBus));
    return 0;
}

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
    return IsDriver(path) ? OpenDriver(flags) : next_open.Get()(path, flags, mode);
}

EXPORTED int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(flags) : next_open64.Get()(path, flags, mode);
}

EXPORTED int openat(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(flags) : next_openat.Get()(folder, path, flags, mode);
}

EXPORTED int openat64(int folder, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return IsDriver(path) ? OpenDriver(flags) : next_openat64.Get()(folder, path, flags, mode);
}

// What a program calls that is compiled with _FORTIFY_SOURCE.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
EXPORTED int __open_2(const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(flags) : next_open_2.Get()(path, flags);
}

EXPORTED int __open64_2(const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(flags) : next_open64_2.Get()(path, flags);
}

EXPORTED int __openat_2(int folder, const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(flags) : next_openat_2.Get()(folder, path, flags);
}

EXPORTED int __openat64_2(int folder, const char* path, int flags) {
    return IsDriver(path) ? OpenDriver(flags) : next_openat64_2.Get()(folder, path, flags);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

EXPORTED int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool of_driver = request == SIOCGMIIREG || request == SIOCSMIIREG;
    return of_driver && IsDescriptorOfDriver(fd)
               ? Access(fd, request, static_cast<mii_ioctl_data*>(argument))
               : next_ioctl.Get()(fd, request, argument);
}
