#include "boards/linux/i2c_adapter.h"

#include <cerrno>

#include "boards/linux/transfer_result.h"
#include "framework/diag_exception.h"

namespace {

// What has the name of no driver in sysfs, but is owned all the same.
constexpr const char* NAMELESS_DRIVER = "name unknown";
// A timer may hit every single call; nobody shall wait for it for ever.
constexpr int INTERRUPTED_TRIES = 10;

const char* OpenAdvice(int error) {
    switch (error) {
        case ENOENT:
        case ENXIO:
            return "; is the kernel module i2c-dev loaded?";
        case EACCES:
        case EPERM:
            return "; root may, and often the group i2c";
        default:
            return "";
    }
}

std::string NameOf(const CI2cSysfs& sysfs, const std::optional<unsigned int>& number) {
    const auto adapter = number ? sysfs.Adapter(*number) : std::nullopt;
    return adapter ? adapter->name : std::string();
}

}  // namespace

CI2cAdapter::CI2cAdapter(const std::string& path, const CI2cSysfs& sysfs, II2cDev& dev)
    : m_path(path),
      m_sysfs(sysfs),
      m_dev(dev),
      m_number(CI2cSysfs::NumberOf(path)),
      m_name(NameOf(sysfs, m_number)) {
    m_fd = m_dev.Open(path);
    if (m_fd < 0) {
        throw CDiagException("%s cannot be opened: %s%s", path.c_str(), ErrorText(-m_fd).c_str(),
                             OpenAdvice(-m_fd));
    }
    const int result = m_dev.GetFunctions(m_fd, m_functions);
    if (result < 0) {
        Close();
        throw CDiagException("%s is no I2C adapter: %s", path.c_str(), ErrorText(-result).c_str());
    }
}

CI2cAdapter::~CI2cAdapter() {
    Close();
}

std::string CI2cAdapter::Description() const {
    return m_name.empty() ? m_path : m_path + " (" + m_name + ")";
}

// The kernel refuses to select an address that a driver owns, and asking it costs less
// than sysfs, which does not tell every owner: a chip that firmware other than a device
// tree describes has no address there, and what drivers own behind multiplexers must not
// be disturbed from before them either.
std::string CI2cAdapter::DriverOf(uint8_t addr) {
    {
        const CGuard<CMutex> guard(m_lock);
        if (Select(addr, false) != -EBUSY) {
            return {};
        }
    }
    std::string driver = m_number ? m_sysfs.DriverOf(*m_number, addr) : std::string();
    if (driver.empty() && m_number) {
        driver = m_sysfs.DriverAcrossMuxes(*m_number, addr);
    }
    return driver.empty() ? NAMELESS_DRIVER : driver;
}

bool CI2cAdapter::HasDrivenChip(uint8_t addr) const {
    return m_number && !m_sysfs.DriverOf(*m_number, addr).empty();
}

int CI2cAdapter::Transfer(std::span<i2c_msg> msgs) {
    const CGuard<CMutex> guard(m_lock);
    return Call([&] { return m_dev.Transfer(m_fd, msgs); });
}

int CI2cAdapter::Smbus(uint8_t addr, bool read, uint8_t command, uint32_t size,
                       i2c_smbus_data& data) {
    const CGuard<CMutex> guard(m_lock);
    if (m_slave != addr) {
        const int result = Select(addr, true);
        if (result < 0) {
            return result;
        }
    }
    return Call([&] { return m_dev.Smbus(m_fd, read, command, size, &data); });
}

int CI2cAdapter::Select(uint8_t addr, bool force) {
    const int result = Call([&] { return m_dev.SelectSlave(m_fd, addr, force); });
    if (result >= 0) {
        m_slave = addr;
    }
    return result;
}

template <typename CALL>
int CI2cAdapter::Call(const CALL& call) {
    if (m_fd < 0 && !Reopen()) {
        return -ENODEV;
    }
    int result = -EINTR;
    for (int tries = 0; result == -EINTR && tries < INTERRUPTED_TRIES; ++tries) {
        result = call();
    }
    if (result == -ENODEV) {
        Close();
    }
    return result;
}

// Another adapter may have got the number meanwhile.
bool CI2cAdapter::Reopen() {
    m_fd = m_dev.Open(m_path);
    if (m_fd >= 0 && NameOf(m_sysfs, m_number) != m_name) {
        Close();
    }
    return m_fd >= 0;
}

void CI2cAdapter::Close() {
    if (m_fd >= 0) {
        m_dev.Close(m_fd);
    }
    m_fd = -1;
    m_slave.reset();
}
