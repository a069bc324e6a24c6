// The SMBus packet error code: a CRC-8 with the polynomial x^8 + x^2 + x + 1
// over every byte of a transfer, address bytes included.
#pragma once

#include <cstdint>
#include <span>

class CSmbusPec {
  public:
    CSmbusPec& Add(uint8_t byte) {
        m_crc = static_cast<uint8_t>(m_crc ^ byte);
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (m_crc & 0x80U) != 0;
            m_crc = static_cast<uint8_t>(m_crc << 1);
            if (carry) {
                m_crc = static_cast<uint8_t>(m_crc ^ POLYNOMIAL);
            }
        }
        return *this;
    }
    CSmbusPec& Add(std::span<const uint8_t> bytes) {
        for (const uint8_t byte : bytes) {
            Add(byte);
        }
        return *this;
    }
    // The byte that carries the address of a message.
    CSmbusPec& AddAddress(uint8_t addr, bool read) {
        return Add(static_cast<uint8_t>((addr << 1) | (read ? 1 : 0)));
    }
    uint8_t Get() const { return m_crc; }

  private:
    static constexpr uint8_t POLYNOMIAL = 0x07;

    uint8_t m_crc = 0;
};
