// The object that morva-mdio-sim preloads. It stands in for the driver
// "/dev/fsl-fman_xmdio_us": opening that path, spelled so, gives a descriptor of the
// simulated bus, on which the two requests of the driver work. The descriptor is a file's,
// so everything else that programs do with descriptors needs no help from here; how it is
// known again is its name, so duplicates and inherited ones are known as well, and nothing
// needs to be remembered. Whatever is not the driver's goes on untouched.
#include <fcntl.h>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "boards/mdio_sim/phy_bus.h"
#include "boards/mdio_sim/sim_environment.h"
#include "boards/preload/next_function.h"
#include "boards/preload/open_functions.h"

namespace {

constexpr const char* DRIVER = "/dev/fsl-fman_xmdio_us";

using CIoctl = int (*)(int, unsigned long, ...);

constinit CNext<CIoctl> next_ioctl("ioctl");

int Fail(int error) {
    errno = error;
    return -1;
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

}  // namespace

bool IsDriver(const char* path) {
    return path != nullptr && std::strcmp(path, DRIVER) == 0;
}

int OpenDriver(const char*, int flags) {
    if (const int fault = FaultOf(OPEN_FAULT_VARIABLE)) {
        return Fail(fault);
    }
    const char* bus = std::getenv(BUS_VARIABLE);
    if (bus == nullptr) {
        return Fail(ENODEV);
    }
    return ::open(bus, O_RDWR | (flags & O_CLOEXEC));
}

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
