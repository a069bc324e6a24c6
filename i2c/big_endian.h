// Numbers of several bytes, the most significant one first.
#pragma once

#include <cstdint>
#include <span>

// Of eight bytes at most.
constexpr uint64_t BigEndian(std::span<const uint8_t> bytes) {
    uint64_t value = 0;
    for (const uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return value;
}
