#include "boards/chips/mapped_io_device.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

namespace {

constexpr uint8_t PORT_WIDTH = 8;

uint64_t PageSize() {
    return static_cast<uint64_t>(::sysconf(_SC_PAGESIZE));
}

[[noreturn]] void Fail(const char* what, const std::filesystem::path& path, int err) {
    throw CDiagException("cannot %s %s: %s", what, path.c_str(), GetErrorStr(err).c_str());
}

}  // namespace

CPortTable::CPortTable(uint8_t ports)
    : m_register{.name = "port",
                 .desc = "levels of the port's pins",
                 .dtype = VT_UINT8,
                 .format = VF_HEX | VF_PAD,
                 .offset = 0,
                 .access = DIAG_REGACC_RW,
                 .flags = 0,
                 .num_regs = ports,
                 .addr_stride = 1,
                 .mask = 0xFF,
                 .init_data = 0,
                 .p_reginfo = nullptr},
      m_regt{&m_register, 1} {}

CMappedIoDevice::CMappedIoDevice(const std::string& name, const std::string& description,
                                 std::filesystem::path file, uint64_t offset, uint8_t ports)
    : CPortTable(ports),
      CDiagIoDevice(name, description, &m_regt),
      m_path(std::move(file)),
      m_file(::open(m_path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK)),
      m_offset(offset),
      m_ahead(static_cast<size_t>(offset % PageSize())) {
    m_num_ports = ports;
    m_port_width = PORT_WIDTH;
    if (!m_file.IsOpen()) {
        Fail("open", m_path, errno);
    }
    if (const std::string shortage = Shortage(); !shortage.empty()) {
        throw CDiagException("%s", shortage.c_str());
    }
    m_pages = ::mmap(nullptr, m_ahead + m_num_ports, PROT_READ | PROT_WRITE, MAP_SHARED,
                     m_file.Get(), static_cast<off_t>(offset - m_ahead));
    if (m_pages == MAP_FAILED) {
        Fail("map", m_path, errno);
    }
    m_bytes = static_cast<uint8_t*>(m_pages) + m_ahead;
}

CMappedIoDevice::~CMappedIoDevice() {
    ::munmap(m_pages, m_ahead + m_num_ports);
}

uint32_t CMappedIoDevice::ReadIoPort(int port, uint8_t* val) {
    if (!IsThere(port)) {
        return 0;
    }
    *val = m_bytes[port];
    return 1;
}

uint32_t CMappedIoDevice::WriteIoPort(int port, uint8_t val, uint8_t msk) {
    if (!IsThere(port)) {
        return 0;
    }
    const CGuard<CMutex> guard(m_write_lock);
    m_bytes[port] = static_cast<uint8_t>((m_bytes[port] & ~msk) | (val & msk));
    return 1;
}

bool CMappedIoDevice::readRegEntry(diag_regdata_t* data, diag_reg_st*, uint32_t index) {
    if (!IsThere(index)) {
        return false;
    }
    *data = m_bytes[index];
    return true;
}

bool CMappedIoDevice::writeRegEntry(diag_regdata_t* data, diag_reg_st*, uint32_t index) {
    if (!IsThere(index)) {
        return false;
    }
    const CGuard<CMutex> guard(m_write_lock);
    m_bytes[index] = static_cast<uint8_t>(*data);
    return true;
}

// An access behind the end of a file that was cut meanwhile would end the process.
bool CMappedIoDevice::IsThere(int64_t port) const {
    if (port < 0 || port >= m_num_ports) {
        SendLog(LW_ERR_SW, "ports are 0 to %d\n", m_num_ports - 1);
        return false;
    }
    const std::string shortage = Shortage();
    if (!shortage.empty()) {
        SendLog(LW_ERR_SYS, "%s\n", shortage.c_str());
    }
    return shortage.empty();
}

// Empty when the file has a byte for each port. One that is no plain file tells no size.
std::string CMappedIoDevice::Shortage() const {
    struct stat info {};
    if (::fstat(m_file.Get(), &info) != 0) {
        return "cannot examine " + m_path.string() + ": " + GetErrorStr(errno);
    }
    const uint64_t end = m_offset + m_num_ports;
    if (!S_ISREG(info.st_mode) || static_cast<uint64_t>(info.st_size) >= end) {
        return {};
    }
    return m_path.string() + " has " + std::to_string(info.st_size) + " bytes, the ports take " +
           std::to_string(end);
}
