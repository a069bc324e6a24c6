// The kernel's I2C character device, /dev/i2c-N, as one narrow seam: what the Linux bus
// asks of the system, and nothing else. Tests put their own behind it.
#pragma once

#include <linux/i2c.h>

#include <cstdint>
#include <span>
#include <string>

class II2cDev {
  public:
    virtual ~II2cDev() = default;

    // All return 0 or more, or a negated errno.

    virtual int Open(const std::string& path) = 0;
    virtual void Close(int fd) = 0;
    // I2C_FUNCS.
    virtual int GetFunctions(int fd, unsigned long& functions) = 0;
    // I2C_RDWR: how many messages were moved.
    virtual int Transfer(int fd, std::span<i2c_msg> msgs) = 0;
    // I2C_SLAVE, or I2C_SLAVE_FORCE where a driver of the kernel has the address.
    virtual int SelectSlave(int fd, uint8_t addr, bool force) = 0;
    // I2C_SMBUS.
    virtual int Smbus(int fd, bool read, uint8_t command, uint32_t size, i2c_smbus_data* data) = 0;
};

// The real one.
II2cDev& KernelI2cDev();
