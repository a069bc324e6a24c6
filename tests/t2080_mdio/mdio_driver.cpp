#include "tests/t2080_mdio/mdio_driver.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/sockios.h>

#include <cerrno>
#include <cstdarg>
#include <ostream>

namespace {

// Set and cleared between tests, never while a driver is in use.
CMdioDriver* g_driver = nullptr;

// The C library's function behind the one of that name here.
template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

int RealOpen(const char* path, int flags, mode_t mode) {
    static auto* const real = Next<int(const char*, int, ...)>("open");
    return real(path, flags, mode);
}

}  // namespace

extern "C" int open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & (O_CREAT | O_TMPFILE)) != 0) {
        va_list args;
        va_start(args, flags);
        mode = va_arg(args, mode_t);
        va_end(args);
    }
    if (g_driver != nullptr && g_driver->Owns(path)) {
        return g_driver->OpenPath(path, flags);
    }
    return RealOpen(path, flags, mode);
}

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list args;
    va_start(args, request);
    void* argument = va_arg(args, void*);
    va_end(args);
    if (g_driver != nullptr && g_driver->Owns(fd)) {
        return g_driver->Ioctl(request, *static_cast<mii_ioctl_data*>(argument));
    }
    static auto* const real = Next<int(int, unsigned long, ...)>("ioctl");
    return real(fd, request, argument);
}

extern "C" int close(int fd) {
    if (g_driver != nullptr && (fd < 0 || g_driver->Owns(fd))) {
        g_driver->NoteClose(fd);
    }
    static auto* const real = Next<int(int)>("close");
    return real(fd);
}

void PrintTo(const CMdioCall& call, std::ostream* out) {
    *out << std::hex << "request 0x" << call.request << " phy_id 0x" << call.phy_id << " reg_num 0x"
         << call.reg_num << " val_in 0x" << call.val_in << " val_out 0x" << call.val_out
         << std::dec;
}

CMdioDriver::CMdioDriver(std::vector<std::string> paths) : m_paths(paths.begin(), paths.end()) {
    g_driver = this;
}

CMdioDriver::~CMdioDriver() {
    g_driver = nullptr;
}

void CMdioDriver::SetRegister(uint16_t phy_id, uint16_t reg_num, uint16_t value) {
    m_registers[{phy_id, reg_num}] = value;
}

int CMdioDriver::OpenPath(const std::string& path, int flags) {
    m_files.push_back("open " + path);
    m_open_flags = flags;
    if (m_open_error != 0) {
        errno = m_open_error;
        return -1;
    }
    // A descriptor of the system, so that it shows in /proc when it leaks.
    const int fd = RealOpen("/dev/null", O_RDONLY | O_CLOEXEC, 0);
    m_open.insert(fd);
    return fd;
}

int CMdioDriver::Ioctl(unsigned long request, mii_ioctl_data& record) {
    m_calls.push_back({request, record.phy_id, record.reg_num, record.val_in, record.val_out});
    if (m_ioctl_error != 0) {
        errno = m_ioctl_error;
        return -1;
    }
    if (request == SIOCGMIIREG) {
        record.val_out = m_registers[{record.phy_id, record.reg_num}];
    } else {
        m_registers[{record.phy_id, record.reg_num}] = record.val_in;
    }
    return m_ioctl_result;
}

void CMdioDriver::NoteClose(int fd) {
    m_files.emplace_back(fd < 0 ? "close -1" : "close");
    m_open.erase(fd);
}
