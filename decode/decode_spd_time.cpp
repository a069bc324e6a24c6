#include "decode/decode_spd_time.h"

#include "decode/decode_spd_codes.h"

std::optional<CSpdTime> SpdTime(const ddr3_spd_eeprom_t& spd, unsigned medium, int fine) {
    if (spd.mtb_divisor == 0) {
        return std::nullopt;
    }
    CSpdTime time{int64_t{medium} * spd.mtb_dividend * 1000, spd.mtb_divisor};
    if (fine != 0) {
        const unsigned divisor = Bits(spd.ftb_div, 3, 0);
        if (divisor == 0) {
            return std::nullopt;
        }
        time.ps = time.ps * divisor + int64_t{fine} * Bits(spd.ftb_div, 7, 4) * time.over;
        time.over *= divisor;
    }
    return time;
}

std::string TimeText(const CSpdTime& time) {
    std::string text =
        Fixed(static_cast<double>(time.ps) / static_cast<double>(time.over * 1000), 4);
    if (text.ends_with('0')) {
        text.pop_back();
    }
    return text + " ns";
}

std::string SpdTimeText(const ddr3_spd_eeprom_t& spd, unsigned medium, int fine) {
    if (const std::optional<CSpdTime> time = SpdTime(spd, medium, fine)) {
        return TimeText(*time);
    }
    std::string text = std::to_string(medium) + " MTB";
    if (fine != 0) {
        text += (fine < 0 ? " - " : " + ") + std::to_string(fine < 0 ? -fine : fine) + " FTB";
    }
    return text;
}

int64_t ClocksFor(const CSpdTime& time, const CSpdTime& clock) {
    if (time.ps <= 0) {
        return 0;
    }
    const int64_t divisor = time.over * clock.ps;
    return (time.ps * clock.over + divisor - 1) / divisor;
}
