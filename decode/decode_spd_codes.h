// The coded fields of a DDR3 SPD: the bits of a byte, what they stand for, and the
// module types that share a layout of the module section.
#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "decode/field_text.h"
#include "i2c/ddr3_spd.h"

// Bits `high` to `low` of a byte.
constexpr unsigned Bits(uint8_t byte, int high, int low) {
    return byte >> low & ((1U << (high - low + 1)) - 1U);
}

constexpr bool Bit(uint8_t byte, int bit) {
    return Bits(byte, bit, bit) != 0;
}

inline std::string YesNo(bool yes) {
    return yes ? "yes" : "no";
}

// What a code stands for by its place in `names`; its number if that has no name for
// it, or an empty one.
inline std::string NameOf(unsigned code, std::span<const std::string_view> names, int digits = 1) {
    if (code < names.size() && !names[code].empty()) {
        return std::string(names[code]);
    }
    return Hex(code, digits);
}

// In bits, without those of ECC.
constexpr std::optional<uint64_t> BusWidth(const ddr3_spd_eeprom_t& spd) {
    const unsigned code = Bits(spd.bus_width, 2, 0);
    return code <= 3 ? std::optional<uint64_t>(8U << code) : std::nullopt;
}

enum class SpdLayout { UNKNOWN, UNBUFFERED, REGISTERED, CLOCKED, LOAD_REDUCED };

// How the module section of this module type is laid out.
constexpr SpdLayout LayoutOf(const ddr3_spd_eeprom_t& spd) {
    using enum SpdLayout;
    constexpr SpdLayout LAYOUTS[] = {UNKNOWN,    REGISTERED,   UNBUFFERED, UNBUFFERED, UNBUFFERED,
                                     REGISTERED, UNBUFFERED,   CLOCKED,    UNBUFFERED, REGISTERED,
                                     CLOCKED,    LOAD_REDUCED, UNBUFFERED, UNBUFFERED};
    return spd.module_type < std::size(LAYOUTS) ? LAYOUTS[spd.module_type] : UNKNOWN;
}
