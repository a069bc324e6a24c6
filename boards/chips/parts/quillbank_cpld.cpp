// The CPLD of QUILLBANK (docs/quillbank_cpld.md).
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr uint32_t LEDS = 8;
constexpr uint32_t LANES = 4;

constexpr std::array REGISTERS = {
    Register("id", 0x00, VT_UINT16, DIAG_REGACC_RO, 0xFFFF, 0x5142, "\"QB\""),
    Register("version", 0x02, VT_UINT8, DIAG_REGACC_RO, 0xFF, 0x13, "7:4 major, 3:0 minor"),
    Register("scratch", 0x03, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00, "no effect"),
    Register("events", 0x04, VT_UINT8, DIAG_REGACC_RC, 0x3F, 0x01,
             "since the last read: 5 watchdog, 4 fan stalled, 3 rail out of range, "
             "2 10G cage changed, 1 1G cage changed, 0 power came on"),
    Register("event-mask", 0x05, VT_UINT8, DIAG_REGACC_RW, 0x3F, 0x00,
             "1: the event interrupts the processor"),
    Register("reset", 0x06, VT_UINT8, DIAG_REGACC_WO, 0x0F, 0x00,
             "1 asks for a reset pulse: 3 10G PHY, 2 1G PHYs, 1 multiplexers, 0 cages"),
    Array(Register("led", 0x10, VT_UINT8, DIAG_REGACC_RW, 0x07, 0x00,
                   "2 blinks, 1:0 off/green/amber/both"),
          LEDS),
    Array(Register("lane", 0x20, VT_UINT16, DIAG_REGACC_RW, 0x8F3F, 0x0208,
                   "of the 10G link: 15 off, 11:8 pre-emphasis in dB, 5:0 swing in 25 mV"),
          LANES),
};

}  // namespace

const register_part_t QUILLBANK_CPLD = {"quillbank-cpld", "board CPLD", REGISTERS};
