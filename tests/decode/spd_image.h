// An SPD to change byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "decode/decode_spd.h"
#include "i2c/crc16.h"
#include "tests/decode/decoded.h"

class CSpdImage {
  public:
    // That of the default board's unbuffered module.
    CSpdImage() : m_bytes(BoardImage("i2c-0/0x77/ch0/0x53.bin")) {}

    CSpdImage& Set(size_t at, std::initializer_list<int> bytes) {
        for (const int byte : bytes) {
            m_bytes.at(at++) = static_cast<uint8_t>(byte);
        }
        return *this;
    }

    CSpdImage& SetText(size_t at, std::string_view text) {
        for (const char c : text) {
            m_bytes.at(at++) = static_cast<uint8_t>(c);
        }
        return *this;
    }

    // Makes the CRC right again, over so many bytes.
    CSpdImage& Seal(size_t covered = 117) {
        const uint16_t crc = Crc16(std::span(m_bytes).first(covered), 0);
        return Set(126, {crc & 0xFF, crc >> 8});
    }

    CDecodedRecord Decode() const { return DecodeSpd(m_bytes); }

    std::string Value(std::string_view name) const { return ValueOf(Decode(), name); }

  private:
    std::vector<uint8_t> m_bytes;
};

// The value of a field when a byte has that value, and all others are as they are.
inline std::string SpdValueWith(size_t at, int byte, std::string_view name) {
    return CSpdImage().Set(at, {byte}).Value(name);
}

// A value for each byte value, in their order.
struct CSpdCode {
    int byte;
    std::string_view value;
};

inline void ExpectSpdCodes(size_t at, std::string_view name,
                           std::initializer_list<CSpdCode> codes) {
    for (const CSpdCode& code : codes) {
        EXPECT_EQ(SpdValueWith(at, code.byte, name), code.value)
            << name << ", byte " << at << " = " << code.byte;
    }
}
