// /dev/i2c-N with nothing between: what the least program would do.
#pragma once

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>

#include <array>
#include <cstdint>
#include <span>

#include "framework/file_descriptor.h"

class CBareAdapter {
  public:
    explicit CBareAdapter(const char* path) : m_fd(::open(path, O_RDWR | O_CLOEXEC)) {}

    // A write of address bytes and a read behind a repeated start.
    bool Read(uint8_t addr, std::span<uint8_t> at, std::span<uint8_t> to) const {
        std::array<i2c_msg, 2> msgs = {Message(addr, 0, at), Message(addr, I2C_M_RD, to)};
        return Transfer(msgs) == 2;
    }
    // An empty write, or one byte that is read.
    bool Asks(uint8_t addr, bool read) const {
        uint8_t byte = 0;
        std::array<i2c_msg, 1> msgs = {read ? Message(addr, I2C_M_RD, {&byte, 1})
                                            : Message(addr, 0, {})};
        return Transfer(msgs) == 1;
    }
    // Whether no driver has the address.
    bool Selects(uint8_t addr) const { return ::ioctl(m_fd.Get(), I2C_SLAVE, addr) == 0; }

  private:
    static i2c_msg Message(uint8_t addr, uint16_t flags, std::span<uint8_t> bytes) {
        return {addr, flags, static_cast<uint16_t>(bytes.size()), bytes.data()};
    }
    int Transfer(std::span<i2c_msg> msgs) const {
        i2c_rdwr_ioctl_data data = {msgs.data(), static_cast<uint32_t>(msgs.size())};
        return ::ioctl(m_fd.Get(), I2C_RDWR, &data);
    }

    const CFileDescriptor m_fd;
};
