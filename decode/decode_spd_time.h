// Times of a DDR3 SPD: so many units of a medium and of a fine time base. They are
// kept as exact fractions, because rounding first may cost a clock.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "i2c/ddr3_spd.h"

// `ps` / `over` picoseconds; `over` is above zero.
struct CSpdTime {
    int64_t ps;
    int64_t over;
};

// Nothing when the time bases do not define it.
std::optional<CSpdTime> SpdTime(const ddr3_spd_eeprom_t& spd, unsigned medium, int fine = 0);

// "13.125 ns", or the units where the time bases do not define it.
std::string SpdTimeText(const ddr3_spd_eeprom_t& spd, unsigned medium, int fine = 0);

// "1.250 ns"; with a fourth decimal for half a picosecond, as of the common fine time
// base of 2.5 ps.
std::string TimeText(const CSpdTime& time);

// How many periods of a clock, which is above zero, cover a time.
int64_t ClocksFor(const CSpdTime& time, const CSpdTime& clock);
