// PCF8574: I/O expander with 8 quasi-bidirectional pins (NXP data sheet PCF8574_PCF8574A).
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array REGISTERS = {
    WithoutPointer(
        Register("input", 0, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0xFF, "levels of the pins")),
    WithoutPointer(Register("output", 0, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0xFF,
                            "0 pulls the pin low, 1 lets go of it")),
};

}  // namespace

const register_part_t PCF8574 = {"pcf8574", "I/O expander, 8 pins", REGISTERS};
