// ADT7461: temperature monitor for itself and a remote diode (onsemi data sheet ADT7461/D,
// "List of registers"). Many registers are written by another pointer than they are read by.
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array REGISTERS = {
    Decimal(Register("local-temp", 0x00, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x00,
                     "own temperature in degrees Celsius (64 more in the extended range)")),
    Decimal(Register("remote-temp", 0x01, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x00,
                     "the diode's temperature in degrees Celsius (64 more in the extended range)")),
    Register("status", 0x02, VT_UINT8, DIAG_REGACC_RC, 0xFF, 0x00,
             "7 busy, 6 local high, 5 local low, 4 remote high, 3 remote low, 2 diode open, "
             "1 remote THERM, 0 local THERM"),
    WrittenAt(Register("config", 0x03, VT_UINT8, DIAG_REGACC_RW, 0xE4, 0x00,
                       "7 alerts masked, 6 standby, 5 THERM2 in place of ALERT, 2 extended range"),
              0x09),
    WrittenAt(Register("rate", 0x04, VT_UINT8, DIAG_REGACC_RW, 0x0F, 0x08,
                       "conversions per second, 0 to 10: 1/16 * 2^n"),
              0x0A),
    WrittenAt(Decimal(Register("local-high", 0x05, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x55,
                               "limit in degrees Celsius (64 more in the extended range)")),
              0x0B),
    WrittenAt(Decimal(Register("local-low", 0x06, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00,
                               "limit in degrees Celsius (64 more in the extended range)")),
              0x0C),
    WrittenAt(Decimal(Register("remote-high", 0x07, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x55,
                               "limit in degrees Celsius (64 more in the extended range)")),
              0x0D),
    WrittenAt(Decimal(Register("remote-low", 0x08, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00,
                               "limit in degrees Celsius (64 more in the extended range)")),
              0x0E),
    Register("one-shot", 0x0F, VT_UINT8, DIAG_REGACC_WO, 0xFF, 0x00,
             "any value: one conversion in standby"),
    Register("remote-temp-low", 0x10, VT_UINT8, DIAG_REGACC_RO, 0xC0, 0x00,
             "7:6 quarters of a degree of remote-temp"),
    Decimal(Register("offset", 0x11, VT_INT8, DIAG_REGACC_RW, 0xFF, 0x00,
                     "added to the diode's temperature, degrees Celsius")),
    Register("offset-low", 0x12, VT_UINT8, DIAG_REGACC_RW, 0xC0, 0x00,
             "7:6 quarters of a degree of offset"),
    Register("remote-high-low", 0x13, VT_UINT8, DIAG_REGACC_RW, 0xC0, 0x00,
             "7:6 quarters of a degree of remote-high"),
    Register("remote-low-low", 0x14, VT_UINT8, DIAG_REGACC_RW, 0xC0, 0x00,
             "7:6 quarters of a degree of remote-low"),
    Decimal(Register("remote-therm", 0x19, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x55,
                     "THERM limit of the diode, degrees Celsius (64 more in the extended "
                     "range)")),
    Decimal(Register("local-therm", 0x20, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x55,
                     "own THERM limit, degrees Celsius (64 more in the extended range)")),
    Decimal(Register("therm-hyst", 0x21, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x0A,
                     "hysteresis of both THERM limits, degrees Celsius")),
    Register("alert-after", 0x22, VT_UINT8, DIAG_REGACC_RW, 0x8F, 0x01,
             "7 SMBus timeout, 3:1 measurements out of limits before an alert: 0 one, 1 two, "
             "3 three, 7 four"),
    Register("manufacturer", 0xFE, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x41, "0x41"),
    Register("revision", 0xFF, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x51, "of the die"),
};

}  // namespace

const register_part_t ADT7461 = {"adt7461", "temperature monitor", REGISTERS};
