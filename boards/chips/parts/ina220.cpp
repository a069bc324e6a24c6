// INA220: current and power monitor (TI data sheet SBOS459, "Register maps").
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array REGISTERS = {
    Register("config", 0x00, VT_UINT16, DIAG_REGACC_RW, 0xBFFF, 0x399F,
             "15 reset, 13 bus range 32 V (else 16 V), 12:11 shunt range 40/80/160/320 mV, "
             "10:7 bus ADC, 6:3 shunt ADC, 2:0 mode (7: both, continuously)"),
    Decimal(Register("shunt-voltage", 0x01, VT_INT16, DIAG_REGACC_RO, 0xFFFF, 0x0000,
                     "voltage over the shunt in 10 uV")),
    Register("bus-voltage", 0x02, VT_UINT16, DIAG_REGACC_RO, 0xFFFB, 0x0000,
             "15:3 voltage of the bus in 4 mV, 1 conversion ready (cleared by reading power), "
             "0 current or power overflow"),
    Decimal(
        Register("power", 0x03, VT_UINT16, DIAG_REGACC_RO, 0xFFFF, 0x0000,
                 "power in 20 units of current, 0 without a calibration; reading it clears bit 1 "
                 "of bus-voltage")),
    Decimal(Register("current", 0x04, VT_INT16, DIAG_REGACC_RO, 0xFFFF, 0x0000,
                     "shunt-voltage * calibration / 4096, 0 without a calibration")),
    Register("calibration", 0x05, VT_UINT16, DIAG_REGACC_RW, 0xFFFE, 0x0000,
             "15:1: 0.04096 / (unit of current in A * shunt in Ohm)"),
};

}  // namespace

const register_part_t INA220 = {"ina220", "power monitor", REGISTERS};
