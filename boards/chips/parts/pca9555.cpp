// PCA9534 (8 pins), PCA9535 and PCA9555 (16 pins): I/O expanders (NXP data sheets PCA9534,
// PCA9535_PCA9535C, PCA9555, "Register descriptions"). They differ in pull-ups alone.
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr diag_reg_st Input(uint8_t pointer) {
    return Register("input", pointer, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x00, "levels of the pins");
}
constexpr diag_reg_st Output(uint8_t pointer) {
    return Register("output", pointer, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0xFF,
                    "levels that pins have as outputs");
}
constexpr diag_reg_st Polarity(uint8_t pointer) {
    return Register("polarity", pointer, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00,
                    "1: the bit of input is inverted");
}
constexpr diag_reg_st Config(uint8_t pointer) {
    return Register("config", pointer, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0xFF,
                    "1: the pin is an input");
}

constexpr std::array ONE_PORT = {Input(0), Output(1), Polarity(2), Config(3)};
constexpr std::array TWO_PORTS = {Array(Input(0), 2), Array(Output(2), 2), Array(Polarity(4), 2),
                                  Array(Config(6), 2)};

}  // namespace

const register_part_t PCA9534 = {"pca9534", "I/O expander, 8 pins", ONE_PORT};
const register_part_t PCA9535 = {"pca9535", "I/O expander, 16 pins", TWO_PORTS};
const register_part_t PCA9555 = {"pca9555", "I/O expander, 16 pins", TWO_PORTS};
