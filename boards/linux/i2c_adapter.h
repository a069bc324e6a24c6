// One I2C adapter of the running kernel, its device file opened once and held. A call
// that a signal interrupted is made again.
//
// The kernel cannot let go of an adapter that was unplugged while the file is open. So
// the file is closed when a call says that the adapter is gone, and opened again by the
// next call if the same adapter is there again. Several threads may call at once.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "boards/linux/i2c_dev.h"
#include "boards/linux/i2c_sysfs.h"
#include "framework/diag_mutex.h"

class CI2cAdapter {
  public:
    // Throws CDiagException, naming the file and the kernel's reason, when it cannot be
    // opened or is no adapter. `dev` must outlive this object.
    CI2cAdapter(const std::string& path, const CI2cSysfs& sysfs, II2cDev& dev);
    ~CI2cAdapter();
    CI2cAdapter(const CI2cAdapter&) = delete;
    CI2cAdapter& operator=(const CI2cAdapter&) = delete;

    const std::string& Path() const { return m_path; }
    // The path, and the name that the adapter's driver gave it.
    std::string Description() const;
    // Whether the adapter has one of these I2C_FUNC_*.
    bool Has(unsigned long functions) const { return (m_functions & functions) != 0; }
    // The driver that owns an address; empty when none does.
    std::string DriverOf(uint8_t addr);
    // Whether what that driver owns is a chip on this adapter, as far as sysfs tells.
    bool HasDrivenChip(uint8_t addr) const;

    // All return 0 or more, or a negated errno.

    // How many messages were moved.
    int Transfer(std::span<i2c_msg> msgs);
    // One operation with a slave, whoever owns its address.
    int Smbus(uint8_t addr, bool read, uint8_t command, uint32_t size, i2c_smbus_data& data);

  private:
    // All with the lock held.
    bool Reopen();
    void Close();
    int Select(uint8_t addr, bool force);
    template <typename CALL>
    int Call(const CALL& call);

    const std::string m_path;
    const CI2cSysfs m_sysfs;
    II2cDev& m_dev;
    const std::optional<unsigned int> m_number;
    const std::string m_name;
    unsigned long m_functions = 0;  // I2C_FUNC_*
    CMutex m_lock;
    int m_fd = -1;                   // below 0 while the adapter is gone
    std::optional<uint8_t> m_slave;  // the address selected for SMBus operations
};
