// LM75: temperature sensor and watchdog (TI data sheet SNOS808, "Internal register
// structure").
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array REGISTERS = {
    Register("temp", 0x00, VT_UINT16, DIAG_REGACC_RO, 0xFF80, 0x0000,
             "temperature, 15:7 in 0.5 degrees Celsius, two's complement"),
    Register("conf", 0x01, VT_UINT8, DIAG_REGACC_RW, 0x1F, 0x00,
             "4:3 faults 1/2/4/6, 2 OS active high, 1 interrupt mode, 0 shutdown"),
    Register("thyst", 0x02, VT_UINT16, DIAG_REGACC_RW, 0xFF80, 0x4B00,
             "hysteresis, 15:7 in 0.5 degrees Celsius"),
    Register("tos", 0x03, VT_UINT16, DIAG_REGACC_RW, 0xFF80, 0x5000,
             "overtemperature, 15:7 in 0.5 degrees Celsius"),
};

}  // namespace

const register_part_t LM75 = {"lm75", "temperature sensor", REGISTERS};
