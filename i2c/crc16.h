// CRC-16 with the polynomial 0x1021, most significant bit first, as the records of
// EEPROMs have it. `initial` 0 is CRC-16/XMODEM; 0xFFFF, and the result
// complemented, is CRC-16/GENIBUS.
#pragma once

#include <cstdint>
#include <span>

constexpr uint16_t Crc16(std::span<const uint8_t> bytes, uint16_t initial) {
    uint16_t crc = initial;
    for (const uint8_t byte : bytes) {
        crc = static_cast<uint16_t>(crc ^ byte << 8);
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (crc & 0x8000) != 0;
            crc = static_cast<uint16_t>(crc << 1 ^ (carry ? 0x1021 : 0));
        }
    }
    return crc;
}
