// What the kernel tells of its I2C adapters and of the chips that its drivers own, in
// sysfs. Nothing here opens an adapter or moves a byte; what is missing or odd in sysfs
// is left out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct i2c_adapter_t {
    unsigned int number;   // the N of i2c-N
    std::string name;      // the adapter's own, e.g. "SMBus I801 adapter at efa0"
    std::string dev_path;  // "/dev/i2c-N"
    std::string of_node;   // path in the device tree, "/soc@ffe000000/i2c@118000"; may be empty
};

// A chip that a driver of the kernel is bound to.
struct i2c_driven_chip_t {
    unsigned int bus;
    uint8_t addr;
    std::string name;    // what the kernel takes the chip for, e.g. "24c02"
    std::string driver;  // e.g. "at24"
};

class CI2cSysfs {
  public:
    // Where sysfs is: the environment's SYSFS_PATH, /sys without one.
    static std::string DefaultRoot();

    explicit CI2cSysfs(const std::string& root = DefaultRoot());

    // In order of their numbers.
    std::vector<i2c_adapter_t> Adapters() const;
    std::optional<i2c_adapter_t> Adapter(unsigned int number) const;

    // The number of the adapter behind a device file: that of "/dev/i2c-N" or of what a
    // link leads to. Nothing for a file of another name.
    static std::optional<unsigned int> NumberOf(const std::string& dev_path);

    // The driver that owns an address; empty when none does.
    std::string DriverOf(unsigned int bus, uint8_t addr) const;
    // The driver that owns an address on another bus which the kernel's multiplexers may
    // connect with this one, and that chip: "at24 at 5-0050"; empty when none does.
    std::string DriverAcrossMuxes(unsigned int bus, uint8_t addr) const;
    // The adapter of a channel of a multiplexer that the kernel drives; nothing when the
    // kernel does not drive it, or not that channel.
    std::optional<unsigned int> ChannelOf(unsigned int bus, uint8_t mux_addr,
                                          unsigned int channel) const;
    // In order of bus and address.
    std::vector<i2c_driven_chip_t> DrivenChips() const;

  private:
    std::string Folder(unsigned int number) const;
    i2c_adapter_t Read(unsigned int number) const;
    bool IsBehind(unsigned int bus, unsigned int upper) const;

    std::string m_devices;  // the folder of the I2C bus's devices
};
