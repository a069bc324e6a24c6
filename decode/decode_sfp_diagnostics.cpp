#include "decode/decode_sfp_diagnostics.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "decode/decode_sfp.h"
#include "decode/decode_sfp_a2h.h"
#include "decode/field_text.h"
#include "i2c/big_endian.h"

namespace {

constexpr size_t A2H_AT = SFP_PAGE_SIZE;

// Of the diagnostic monitoring type.
constexpr uint8_t IMPLEMENTED = 0x40;
constexpr uint8_t INTERNALLY_CALIBRATED = 0x20;
constexpr uint8_t EXTERNALLY_CALIBRATED = 0x10;
constexpr uint8_t AVERAGE_POWER = 0x08;
constexpr uint8_t ADDRESS_CHANGE = 0x04;

constexpr uint8_t DATA_NOT_READY = 0x01;  // of the status
constexpr uint8_t COOLED = 0x04;          // of the first byte of the options
constexpr uint8_t TUNABLE = 0x40;         // of the second one

struct CDiagnostics {
    sfp_serial_id_t id;
    sfp_diagnostics_t page;
};

uint16_t Unsigned(const sfp_word_t& word) {
    return static_cast<uint16_t>(BigEndian(word));
}

int16_t Signed(const sfp_word_t& word) {
    return static_cast<int16_t>(Unsigned(word));
}

bool IsExternal(const CDiagnostics& d) {
    constexpr uint8_t BOTH = INTERNALLY_CALIBRATED | EXTERNALLY_CALIBRATED;
    return (d.id.Diagnostic_Monitoring_Type & BOTH) == EXTERNALLY_CALIBRATED;
}

double Calibrated(const CDiagnostics& d, double raw, const sfp_calibration_s& calibration) {
    return IsExternal(d) ? Unsigned(calibration.slope) / 256.0 * raw + Signed(calibration.offset)
                         : raw;
}

double CalibratedRxPower(const CDiagnostics& d, double raw) {
    if (!IsExternal(d)) {
        return raw;
    }
    double power = 0;
    for (const auto& coefficient : d.page.rx_power) {
        const auto bits = static_cast<uint32_t>(BigEndian(coefficient));
        power = power * raw + static_cast<double>(std::bit_cast<float>(bits));
    }
    return power;
}

constexpr const char* OUT_OF_RANGE = "out of range";

// `value` counts what the word of a quantity counts, `per_unit` of it to the unit.
// Beyond 16 bits only the constants of a blank or broken chip can bring it.
std::string Measure(double value, double per_unit, int decimals, std::string_view unit) {
    if (!(std::abs(value) <= 0xFFFF)) {
        return OUT_OF_RANGE;
    }
    return Fixed(value / per_unit, decimals) + " " + std::string(unit);
}

// Darkness has no logarithm, and is told as "-inf dBm". Constants of calibration may make
// less than nothing of it; what is less by no digit that is shown, is darkness too.
std::string Power(double value) {
    if (std::round(value) < 0) {
        return OUT_OF_RANGE;
    }
    constexpr double PER_MILLIWATT = 10000;
    std::string milliwatts = Measure(value, PER_MILLIWATT, 4, "mW");
    if (!milliwatts.ends_with("mW")) {
        return milliwatts;
    }
    const double dbm = value > 0 ? 10 * std::log10(value / PER_MILLIWATT)
                                 : -std::numeric_limits<double>::infinity();
    return milliwatts + " (" + Fixed(dbm, 2) + " dBm)";
}

std::string Temperature(const CDiagnostics& d, const sfp_word_t& word) {
    return Measure(Calibrated(d, Signed(word), d.page.temperature), 256, 2, "C");
}

std::string Voltage(const CDiagnostics& d, const sfp_word_t& word) {
    return Measure(Calibrated(d, Unsigned(word), d.page.voltage), 10000, 4, "V");
}

std::string TxBias(const CDiagnostics& d, const sfp_word_t& word) {
    return Measure(Calibrated(d, Unsigned(word), d.page.tx_bias), 500, 3, "mA");
}

std::string TxPower(const CDiagnostics& d, const sfp_word_t& word) {
    return Power(Calibrated(d, Unsigned(word), d.page.tx_power));
}

std::string RxPower(const CDiagnostics& d, const sfp_word_t& word) {
    return Power(CalibratedRxPower(d, Unsigned(word)));
}

// A module without a cooler has neither of the two below.
std::string LaserTemperature(const CDiagnostics& d, const sfp_word_t& word) {
    if ((d.id.Options[0] & COOLED) == 0) {
        return "";
    }
    // A tunable one may have its wavelength there, and does not tell.
    return (d.id.Options[1] & TUNABLE) != 0 ? Hex(Unsigned(word), 4)
                                            : Measure(Signed(word), 256, 2, "C");
}

std::string TecCurrent(const CDiagnostics& d, const sfp_word_t& word) {
    return (d.id.Options[0] & COOLED) == 0 ? "" : Measure(Signed(word), 10, 1, "mA");
}

// In the order of ESfpQuantity.
constexpr std::string (*IN_WORDS[])(const CDiagnostics&, const sfp_word_t&) = {
    Temperature, Voltage, TxBias, TxPower, RxPower, LaserTemperature, TecCurrent};
static_assert(std::size(IN_WORDS) == SFP_QUANTITIES);

template <ESfpQuantity QUANTITY>
std::string Value(const CDiagnostics& d) {
    return IN_WORDS[QUANTITY](d, d.page.values[QUANTITY]);
}

std::string Limits(const std::string& low, const std::string& high) {
    return low.empty() ? "" : "below " + low + ", above " + high;
}

template <ESfpQuantity QUANTITY>
std::string AlarmLimits(const CDiagnostics& d) {
    const sfp_thresholds_s& limits = d.page.thresholds[QUANTITY];
    return Limits(IN_WORDS[QUANTITY](d, limits.low_alarm),
                  IN_WORDS[QUANTITY](d, limits.high_alarm));
}

template <ESfpQuantity QUANTITY>
std::string WarningLimits(const CDiagnostics& d) {
    const sfp_thresholds_s& limits = d.page.thresholds[QUANTITY];
    return Limits(IN_WORDS[QUANTITY](d, limits.low_warning),
                  IN_WORDS[QUANTITY](d, limits.high_warning));
}

// The names of the bits that are set, the most significant first; "none" for none.
std::string Names(uint16_t bits, std::span<const std::string_view> names) {
    std::vector<std::string> set;
    for (size_t i = 0; i < names.size(); ++i) {
        const size_t bit = names.size() - 1 - i;
        if ((bits >> bit & 1) != 0) {
            set.push_back(names[i].empty() ? "bit " + std::to_string(bit) : std::string(names[i]));
        }
    }
    return set.empty() ? "none" : Listed(set);
}

std::string Flags(const sfp_word_t& word) {
    static constexpr std::string_view FLAGS[] = {"temperature high",
                                                 "temperature low",
                                                 "supply voltage high",
                                                 "supply voltage low",
                                                 "TX bias high",
                                                 "TX bias low",
                                                 "TX power high",
                                                 "TX power low",
                                                 "RX power high",
                                                 "RX power low",
                                                 "laser temperature high",
                                                 "laser temperature low",
                                                 "TEC current high",
                                                 "TEC current low",
                                                 "",
                                                 ""};
    static_assert(std::size(FLAGS) == 16);
    return Names(Unsigned(word), FLAGS);
}

std::string Status(const CDiagnostics& d) {
    static constexpr std::string_view STATUS[] = {"TX disabled", "soft TX disable", "RS1 high",
                                                  "RS0 high",    "soft RS0",        "TX fault",
                                                  "RX loss",     "data not ready"};
    static_assert(std::size(STATUS) == 8);
    return Names(d.page.status & static_cast<uint8_t>(~DATA_NOT_READY), STATUS);
}

std::string Calibration(const CDiagnostics& d) {
    const bool internal = (d.id.Diagnostic_Monitoring_Type & INTERNALLY_CALIBRATED) != 0;
    const bool external = (d.id.Diagnostic_Monitoring_Type & EXTERNALLY_CALIBRATED) != 0;
    if (internal == external) {
        return internal ? "internal and external, taken as internal"
                        : "not stated, taken as internal";
    }
    return internal ? "internal" : "external";
}

uint8_t DmiSum(const sfp_diagnostics_t& page) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&page);
    return std::accumulate(bytes, bytes + offsetof(sfp_diagnostics_t, CC_DMI), uint8_t{0});
}

constexpr CFieldDecoder<CDiagnostics> FIELDS[] = {
    {"Diagnostics", "Calibration", Calibration},
    {"Diagnostics", "Data",
     [](const CDiagnostics& d) -> std::string {
         return (d.page.status & DATA_NOT_READY) != 0 ? "not ready" : "ready";
     }},
    {"Diagnostics", "Temperature", Value<SFP_TEMPERATURE>},
    {"Diagnostics", "Temperature alarm", AlarmLimits<SFP_TEMPERATURE>},
    {"Diagnostics", "Temperature warning", WarningLimits<SFP_TEMPERATURE>},
    {"Diagnostics", "Supply voltage", Value<SFP_VOLTAGE>},
    {"Diagnostics", "Supply voltage alarm", AlarmLimits<SFP_VOLTAGE>},
    {"Diagnostics", "Supply voltage warning", WarningLimits<SFP_VOLTAGE>},
    {"Diagnostics", "TX bias", Value<SFP_TX_BIAS>},
    {"Diagnostics", "TX bias alarm", AlarmLimits<SFP_TX_BIAS>},
    {"Diagnostics", "TX bias warning", WarningLimits<SFP_TX_BIAS>},
    {"Diagnostics", "TX power", Value<SFP_TX_POWER>},
    {"Diagnostics", "TX power alarm", AlarmLimits<SFP_TX_POWER>},
    {"Diagnostics", "TX power warning", WarningLimits<SFP_TX_POWER>},
    {"Diagnostics", "RX power measured as",
     [](const CDiagnostics& d) -> std::string {
         return (d.id.Diagnostic_Monitoring_Type & AVERAGE_POWER) != 0 ? "average" : "OMA";
     }},
    {"Diagnostics", "RX power", Value<SFP_RX_POWER>},
    {"Diagnostics", "RX power alarm", AlarmLimits<SFP_RX_POWER>},
    {"Diagnostics", "RX power warning", WarningLimits<SFP_RX_POWER>},
    {"Diagnostics", "Laser temperature", Value<SFP_LASER_TEMPERATURE>},
    {"Diagnostics", "Laser temperature alarm", AlarmLimits<SFP_LASER_TEMPERATURE>},
    {"Diagnostics", "Laser temperature warning", WarningLimits<SFP_LASER_TEMPERATURE>},
    {"Diagnostics", "TEC current", Value<SFP_TEC_CURRENT>},
    {"Diagnostics", "TEC current alarm", AlarmLimits<SFP_TEC_CURRENT>},
    {"Diagnostics", "TEC current warning", WarningLimits<SFP_TEC_CURRENT>},
    {"Diagnostics", "Alarms", [](const CDiagnostics& d) { return Flags(d.page.alarms); }},
    {"Diagnostics", "Warnings", [](const CDiagnostics& d) { return Flags(d.page.warnings); }},
    {"Diagnostics", "Status", Status},
    {"Diagnostics", "CC_DMI",
     [](const CDiagnostics& d) { return CheckText(d.page.CC_DMI, DmiSum(d.page), 2); }},
};

}  // namespace

bool HasSfpDiagnostics(std::span<const uint8_t> image) {
    const uint8_t type = image[offsetof(sfp_serial_id_t, Diagnostic_Monitoring_Type)];
    return (type & (IMPLEMENTED | ADDRESS_CHANGE)) == IMPLEMENTED;
}

void DecodeSfpDiagnostics(const sfp_serial_id_t& id, std::span<const uint8_t> image,
                          CDecodedRecord& decoded) {
    const auto tell = [&decoded](std::string_view why) {
        decoded.fields.push_back({"Diagnostics", "Diagnostics", std::string(why)});
    };
    if ((id.Diagnostic_Monitoring_Type & IMPLEMENTED) == 0) {
        tell("none");
    } else if (!HasSfpDiagnostics(image)) {
        tell("not decoded: the module changes its address to show them");
    } else if (image.size() < A2H_AT + sizeof(sfp_diagnostics_t)) {
        tell("not read: the 256 bytes of address A2h are missing");
    } else {
        CDiagnostics diagnostics{id, {}};
        std::memcpy(&diagnostics.page, image.data() + A2H_AT, sizeof diagnostics.page);
        DecodeFields(diagnostics, FIELDS, decoded);
        if (diagnostics.page.CC_DMI != DmiSum(diagnostics.page)) {
            decoded.checks_hold = false;
        }
    }
}
