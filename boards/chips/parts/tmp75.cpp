// TMP75: temperature sensor with 12 bits (TI data sheet SBOS288, "Register map").
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array REGISTERS = {
    Register("temp", 0x00, VT_UINT16, DIAG_REGACC_RO, 0xFFF0, 0x0000,
             "temperature, 15:4 in 1/16 degrees Celsius, two's complement"),
    Register("conf", 0x01, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00,
             "7 one-shot, 6:5 resolution 9 to 12 bits, 4:3 faults 1/2/4/6, 2 alert active high, "
             "1 thermostat mode, 0 shutdown"),
    Register("tlow", 0x02, VT_UINT16, DIAG_REGACC_RW, 0xFFF0, 0x4B00,
             "low limit, 15:4 in 1/16 degrees Celsius"),
    Register("thigh", 0x03, VT_UINT16, DIAG_REGACC_RW, 0xFFF0, 0x5000,
             "high limit, 15:4 in 1/16 degrees Celsius"),
};

}  // namespace

const register_part_t TMP75 = {"tmp75", "temperature sensor", REGISTERS};
