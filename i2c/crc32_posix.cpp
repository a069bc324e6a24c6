#include "i2c/crc32_posix.h"

#include <array>
#include <cstddef>
#include <span>

namespace {

constexpr uint32_t POLYNOMIAL = 0x04C11DB7;
constexpr uint32_t TOP_BIT = 0x80000000;

// What each value of the top byte does to the checksum.
constexpr std::array<uint32_t, 256> TABLE = [] {
    std::array<uint32_t, 256> table{};
    for (uint32_t top = 0; top < table.size(); ++top) {
        uint32_t crc = top << 24;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc << 1) ^ ((crc & TOP_BIT) != 0 ? POLYNOMIAL : 0);
        }
        table[top] = crc;
    }
    return table;
}();
static_assert(TABLE[1] == POLYNOMIAL);

}  // namespace

uint32_t crc32_posix(uint32_t crc, const void* data, uint32_t len) {
    for (const uint8_t byte : std::span(static_cast<const uint8_t*>(data), len)) {
        crc = TABLE[(crc >> 24) ^ byte] ^ (crc << 8);
    }
    return crc;
}
