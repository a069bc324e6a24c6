// DS3232: real-time clock with temperature sensor and SRAM (Maxim data sheet 19-5337,
// "Address map"). Times are BCD, 0x59 is 59.
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr uint32_t SRAM_SIZE = 236;

constexpr diag_reg_st Time(const char* name, uint8_t pointer, uint64_t mask, const char* desc,
                           uint64_t reset = 0x00) {
    return Register(name, pointer, VT_UINT8, DIAG_REGACC_RW, mask, reset, desc);
}

constexpr std::array REGISTERS = {
    Time("seconds", 0x00, 0x7F, "BCD 00 to 59"),
    Time("minutes", 0x01, 0x7F, "BCD 00 to 59"),
    Time("hours", 0x02, 0x7F, "6 twelve hours, then 5 PM and BCD 1 to 12; else BCD 00 to 23"),
    Time("day", 0x03, 0x07, "of the week, 1 to 7", 0x01),
    Time("date", 0x04, 0x3F, "of the month, BCD 01 to 31", 0x01),
    Time("month", 0x05, 0x9F, "7 century, 4:0 BCD 01 to 12", 0x01),
    Time("year", 0x06, 0xFF, "BCD 00 to 99"),
    Time("alarm1-seconds", 0x07, 0xFF, "7 any, else BCD 00 to 59"),
    Time("alarm1-minutes", 0x08, 0xFF, "7 any, else BCD 00 to 59"),
    Time("alarm1-hours", 0x09, 0xFF, "7 any, else as hours"),
    Time("alarm1-day", 0x0A, 0xFF, "7 any, 6 a day of the week, else a date"),
    Time("alarm2-minutes", 0x0B, 0xFF, "7 any, else BCD 00 to 59"),
    Time("alarm2-hours", 0x0C, 0xFF, "7 any, else as hours"),
    Time("alarm2-day", 0x0D, 0xFF, "7 any, 6 a day of the week, else a date"),
    Register("control", 0x0E, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x1C,
             "7 oscillator off on battery, 6 square wave on battery, 5 convert temperature, "
             "4:3 rate 1/1024/4096/8192 Hz, 2 interrupt in place of square wave, "
             "1 alarm 2 interrupts, 0 alarm 1 interrupts"),
    Register("status", 0x0F, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0xC8,
             "7 oscillator has stopped (write 0 to clear), 6 32 kHz on battery, 5:4 conversion "
             "every 64/128/256/512 s, 3 32 kHz output, 2 busy, 1 alarm 2 and 0 alarm 1 came "
             "(write 0 to clear)"),
    Decimal(Register("aging-offset", 0x10, VT_INT8, DIAG_REGACC_RW, 0xFF, 0x00,
                     "capacitance added to the oscillator's, about -0.1 ppm for one")),
    Register("temp", 0x11, VT_UINT16, DIAG_REGACC_RO, 0xFFC0, 0x0000,
             "temperature, 15:6 in 0.25 degrees Celsius, two's complement"),
    Array(Register("sram", 0x14, VT_UINT8, DIAG_REGACC_RW, 0xFF, 0x00, "kept by the battery"),
          SRAM_SIZE),
};

}  // namespace

const register_part_t DS3232 = {"ds3232", "real-time clock", REGISTERS};
