// What the tests of the simulated adapters share. They run under morva-i2c-sim, on the
// default board.
#pragma once

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <vector>

using CBytes = std::vector<uint8_t>;

inline constexpr const char* BUS_0 = "/dev/i2c-0";
inline constexpr const char* BUS_1 = "/dev/i2c-1";

// Chips of the default board.
inline constexpr uint8_t SENSOR = 0x4C;      // on bus 0, 8-bit registers
inline constexpr uint8_t EEPROM = 0x50;      // on bus 0, two address bytes
inline constexpr uint8_t CAGES = 0x20;       // on bus 1, a port expander
inline constexpr uint8_t NOBODY = 0x2A;      // on either
inline constexpr uint8_t MAKER_REG = 0xFE;   // of the sensor
inline constexpr uint8_t MAKER = 0x41;       // what it holds
inline constexpr uint8_t OUTPUT_REG = 0x02;  // of the expander, and the next one

// An open adapter, closed when it goes.
class CAdapterFile {
  public:
    explicit CAdapterFile(const char* path, int flags = O_RDWR) : m_fd(::open(path, flags)) {}
    explicit CAdapterFile(int fd) : m_fd(fd) {}
    ~CAdapterFile() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    CAdapterFile(const CAdapterFile&) = delete;
    CAdapterFile& operator=(const CAdapterFile&) = delete;

    int Get() const { return m_fd; }

    // All below return what the call does, or a negated errno.

    template <class Argument>
    int Do(unsigned long request, Argument argument) const {
        return Result(::ioctl(m_fd, request, argument));
    }
    int Transfer(std::vector<i2c_msg> msgs) const {
        i2c_rdwr_ioctl_data data = {msgs.data(), static_cast<uint32_t>(msgs.size())};
        return Do(I2C_RDWR, &data);
    }
    int Write(uint8_t addr, CBytes bytes) const { return Transfer({WriteMsg(addr, bytes)}); }
    // A write, a repeated start and a read.
    int WriteRead(uint8_t addr, CBytes out, CBytes& in) const {
        return Transfer({WriteMsg(addr, out), ReadMsg(addr, in)});
    }
    int Smbus(uint8_t read_write, uint8_t command, uint32_t size, i2c_smbus_data* data) const {
        i2c_smbus_ioctl_data request = {read_write, command, size, data};
        return Do(I2C_SMBUS, &request);
    }

    static i2c_msg WriteMsg(uint8_t addr, CBytes& bytes) {
        return {addr, 0, static_cast<uint16_t>(bytes.size()), bytes.data()};
    }
    static i2c_msg ReadMsg(uint8_t addr, CBytes& bytes) {
        return {addr, I2C_M_RD, static_cast<uint16_t>(bytes.size()), bytes.data()};
    }

  private:
    static int Result(int result) { return result < 0 ? -errno : result; }

    const int m_fd;
};

// The sensor's register that tells its maker, read in one transfer; 0 when it cannot be.
inline uint8_t MakerThrough(const CAdapterFile& adapter) {
    CBytes in(1);
    return adapter.WriteRead(SENSOR, {MAKER_REG}, in) == 2 ? in[0] : 0;
}
