// How fast the module is.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"
#include "decode/decode_spd_time.h"

namespace {

using Spd = ddr3_spd_eeprom_t;

struct CSpeedGrade {
    int transfers;  // MT/s, as it is called
    CSpdTime clock;
};

constexpr CSpeedGrade GRADES[] = {
    {800, {2500, 1}},  {1066, {1875, 1}}, {1333, {1500, 1}},
    {1600, {1250, 1}}, {1866, {7500, 7}}, {2133, {1875, 2}},
};

// The shortest clock period, if there is one to count with.
std::optional<CSpdTime> ClockOf(const Spd& spd) {
    const std::optional<CSpdTime> clock = SpdTime(spd, spd.tck_min, spd.fine_tck_min);
    return clock.has_value() && clock->ps > 0 ? clock : std::nullopt;
}

// Twice per clock so many bytes, in millions per second.
int64_t TransfersAt(const CSpdTime& clock, int64_t bytes = 1) {
    return 2'000'000 * bytes * clock.over / clock.ps;
}

// The periods of the two fastest are no whole numbers of picoseconds: they stand in the
// SPD rounded up or down to a fine step.
const CSpeedGrade* GradeOf(const Spd& spd, const CSpdTime& clock) {
    const CSpdTime step = SpdTime(spd, 0, 1).value_or(CSpdTime{0, 1});
    const auto* found = std::find_if(std::begin(GRADES), std::end(GRADES), [&](const auto& grade) {
        const int64_t apart = std::abs(clock.ps * grade.clock.over - grade.clock.ps * clock.over);
        const bool is_rounded = grade.clock.over != 1;
        return apart == 0 ||
               (is_rounded && apart * step.over < step.ps * clock.over * grade.clock.over);
    });
    return found == std::end(GRADES) ? nullptr : found;
}

std::string MaximumSpeed(const Spd& spd) {
    const std::optional<CSpdTime> clock = ClockOf(spd);
    if (!clock.has_value()) {
        return "unknown";
    }
    const std::string period = ", clock period " + TimeText(*clock);
    const CSpeedGrade* grade = GradeOf(spd, *clock);
    if (grade == nullptr) {
        return std::to_string(TransfersAt(*clock)) + " MT/s, no standard grade" + period;
    }
    std::string text = "DDR3-" + std::to_string(grade->transfers);
    if (const auto bus = BusWidth(spd)) {
        // Modules are called by their MB/s, rounded down.
        const auto bytes = static_cast<int64_t>(*bus / 8);
        text += " (PC3-" + std::to_string(TransfersAt(grade->clock, bytes) / 100 * 100) + ")";
    }
    return text + period;
}

std::string MediumTimeBase(const Spd& spd) {
    return std::to_string(spd.mtb_dividend) + "/" + std::to_string(spd.mtb_divisor) + " ns" +
           (spd.mtb_divisor == 0 ? ", undefined" : "");
}

std::string FineTimeBase(const Spd& spd) {
    const unsigned divisor = Bits(spd.ftb_div, 3, 0);
    return std::to_string(Bits(spd.ftb_div, 7, 4)) + "/" + std::to_string(divisor) + " ps" +
           (divisor == 0 ? ", undefined" : "");
}

unsigned TrasMin(const Spd& spd) {
    return Bits(spd.tras_trc_ext, 3, 0) << 8 | spd.tras_min_lsb;
}

unsigned TrcMin(const Spd& spd) {
    return Bits(spd.tras_trc_ext, 7, 4) << 8 | spd.trc_min_lsb;
}

unsigned TrfcMin(const Spd& spd) {
    return static_cast<unsigned>(spd.trfc_min_msb << 8 | spd.trfc_min_lsb);
}

unsigned TfawMin(const Spd& spd) {
    return Bits(spd.tfaw_msb, 3, 0) << 8 | spd.tfaw_min;
}

// Ascending.
std::vector<int64_t> CasLatencies(const Spd& spd) {
    const int mask = spd.caslat_msb << 8 | spd.caslat_lsb;
    std::vector<int64_t> latencies;
    for (int bit = 0; bit < 15; ++bit) {
        if ((mask >> bit & 1) != 0) {
            latencies.push_back(bit + 4);
        }
    }
    return latencies;
}

std::string CasLatencyText(const Spd& spd) {
    std::vector<std::string> texts;
    for (const int64_t latency : CasLatencies(spd)) {
        texts.push_back(std::to_string(latency));
    }
    return texts.empty() ? "(none)" : Listed(texts);
}

std::string ClocksAtFullSpeed(const Spd& spd) {
    const std::optional<CSpdTime> clock = ClockOf(spd);
    const auto taa = SpdTime(spd, spd.taa_min, spd.fine_taa_min);
    const auto trcd = SpdTime(spd, spd.trcd_min, spd.fine_trcd_min);
    const auto trp = SpdTime(spd, spd.trp_min, spd.fine_trp_min);
    const auto tras = SpdTime(spd, TrasMin(spd));
    if (!clock.has_value() || !taa.has_value() || !trcd.has_value() || !trp.has_value() ||
        !tras.has_value()) {
        return "unknown";
    }
    const CSpeedGrade* grade = GradeOf(spd, *clock);
    const CSpdTime period = grade != nullptr ? grade->clock : *clock;
    const int64_t needed = ClocksFor(*taa, period);
    const std::vector<int64_t> supported = CasLatencies(spd);
    const auto latency = std::lower_bound(supported.begin(), supported.end(), needed);
    if (latency == supported.end()) {
        return "unknown: no CAS latency of " + std::to_string(needed) + " or more is supported";
    }
    return std::to_string(*latency) + "-" + std::to_string(ClocksFor(*trcd, period)) + "-" +
           std::to_string(ClocksFor(*trp, period)) + "-" + std::to_string(ClocksFor(*tras, period));
}

constexpr CFieldDecoder<Spd> FIELDS[] = {
    {"Timing", "Maximum speed", MaximumSpeed},
    {"Timing", "CL-tRCD-tRP-tRAS", ClocksAtFullSpeed},
    {"Timing", "CAS latencies", CasLatencyText},
    {"Timing", "Medium time base (MTB)", MediumTimeBase},
    {"Timing", "Fine time base (FTB)", FineTimeBase},
    {"Timing", "tCKmin",
     [](const Spd& spd) { return SpdTimeText(spd, spd.tck_min, spd.fine_tck_min); }},
    {"Timing", "tAAmin",
     [](const Spd& spd) { return SpdTimeText(spd, spd.taa_min, spd.fine_taa_min); }},
    {"Timing", "tWRmin", [](const Spd& spd) { return SpdTimeText(spd, spd.twr_min); }},
    {"Timing", "tRCDmin",
     [](const Spd& spd) { return SpdTimeText(spd, spd.trcd_min, spd.fine_trcd_min); }},
    {"Timing", "tRRDmin", [](const Spd& spd) { return SpdTimeText(spd, spd.trrd_min); }},
    {"Timing", "tRPmin",
     [](const Spd& spd) { return SpdTimeText(spd, spd.trp_min, spd.fine_trp_min); }},
    {"Timing", "tRASmin", [](const Spd& spd) { return SpdTimeText(spd, TrasMin(spd)); }},
    {"Timing", "tRCmin",
     [](const Spd& spd) { return SpdTimeText(spd, TrcMin(spd), spd.fine_trc_min); }},
    {"Timing", "tRFCmin", [](const Spd& spd) { return SpdTimeText(spd, TrfcMin(spd)); }},
    {"Timing", "tWTRmin", [](const Spd& spd) { return SpdTimeText(spd, spd.twtr_min); }},
    {"Timing", "tRTPmin", [](const Spd& spd) { return SpdTimeText(spd, spd.trtp_min); }},
    {"Timing", "tFAWmin", [](const Spd& spd) { return SpdTimeText(spd, TfawMin(spd)); }},
};

}  // namespace

CSpdFields SpdTimingFields() {
    return FIELDS;
}
