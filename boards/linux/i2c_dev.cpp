#include "boards/linux/i2c_dev.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace {

int Result(int result) {
    return result < 0 ? -errno : result;
}

class CKernelI2cDev : public II2cDev {
  public:
    int Open(const std::string& path) override {
        return Result(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    }
    void Close(int fd) override { ::close(fd); }
    int GetFunctions(int fd, unsigned long& functions) override {
        return Result(::ioctl(fd, I2C_FUNCS, &functions));
    }
    int Transfer(int fd, std::span<i2c_msg> msgs) override {
        i2c_rdwr_ioctl_data data = {msgs.data(), static_cast<uint32_t>(msgs.size())};
        return Result(::ioctl(fd, I2C_RDWR, &data));
    }
    int SelectSlave(int fd, uint8_t addr, bool force) override {
        return Result(::ioctl(fd, force ? I2C_SLAVE_FORCE : I2C_SLAVE, addr));
    }
    int Smbus(int fd, bool read, uint8_t command, uint32_t size, i2c_smbus_data* data) override {
        i2c_smbus_ioctl_data request = {
            .read_write = static_cast<uint8_t>(read ? I2C_SMBUS_READ : I2C_SMBUS_WRITE),
            .command = command,
            .size = size,
            .data = data};
        return Result(::ioctl(fd, I2C_SMBUS, &request));
    }
};

}  // namespace

II2cDev& KernelI2cDev() {
    static CKernelI2cDev dev;
    return dev;
}
