// CRC-16 with the polynomial 0x1021 as the remainder of a long division, bit by
// bit: slow, and with nothing in common with a checksum kept in a register.
#pragma once

#include <cstdint>
#include <vector>

inline uint16_t Crc16ByDivision(const std::vector<uint8_t>& message, uint16_t initial) {
    std::vector<bool> bits;
    for (const uint8_t byte : message) {
        for (int i = 7; i >= 0; --i) {
            bits.push_back((byte >> i & 1) != 0);
        }
    }
    const size_t quotient = bits.size();
    bits.resize(quotient + 16);
    for (size_t i = 0; i < 16; ++i) {
        bits[i] = bits[i] != ((initial >> (15 - i) & 1) != 0);
    }
    for (size_t i = 0; i < quotient; ++i) {
        if (!bits[i]) {
            continue;
        }
        // x^16 + x^12 + x^5 + 1
        for (const size_t power : {16, 12, 5, 0}) {
            bits[i + 16 - power] = !bits[i + 16 - power];
        }
    }
    uint16_t remainder = 0;
    for (size_t i = quotient; i < bits.size(); ++i) {
        remainder = static_cast<uint16_t>(remainder << 1 | (bits[i] ? 1 : 0));
    }
    return remainder;
}

// CRC-16/GENIBUS.
inline uint16_t GenibusByDivision(const std::vector<uint8_t>& message) {
    return static_cast<uint16_t>(~Crc16ByDivision(message, 0xFFFF));
}
