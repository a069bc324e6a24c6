// What the DRAM devices can do, and how they are built.
#include <string>
#include <string_view>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"

namespace {

using Spd = ddr3_spd_eeprom_t;

bool HasExtendedRange(const Spd& spd) {
    return Bit(spd.therm_ref_opt, 0);
}

std::string TemperatureRange(const Spd& spd) {
    return HasExtendedRange(spd) ? "0 to 95 degrees C" : "0 to 85 degrees C";
}

std::string RefreshAbove85(const Spd& spd) {
    if (!HasExtendedRange(spd)) {
        return "";
    }
    return Bit(spd.therm_ref_opt, 1) ? "1x" : "2x";
}

std::string ThermalSensor(const Spd& spd) {
    const unsigned accuracy = Bits(spd.therm_sensor, 6, 0);
    return YesNo(Bit(spd.therm_sensor, 7)) + (accuracy == 0 ? "" : ", accuracy " + Hex(accuracy));
}

std::string DieCount(const Spd& spd) {
    constexpr std::string_view COUNTS[] = {"not specified", "1", "2", "4", "8"};
    return NameOf(Bits(spd.device_type, 6, 4), COUNTS);
}

std::string SignalLoading(const Spd& spd) {
    constexpr std::string_view LOADINGS[] = {"not specified", "multi load stack",
                                             "single load stack"};
    return NameOf(Bits(spd.device_type, 1, 0), LOADINGS);
}

// How often one row may be activated within the window below before its neighbours
// lose data.
constexpr size_t ACTIVATE = 41 - 39;  // in res_39_59

std::string ActivateCount(const Spd& spd) {
    constexpr std::string_view COUNTS[] = {"untested", "700000", "600000", "500000",   "400000",
                                           "300000",   "200000", "",       "unlimited"};
    return NameOf(Bits(spd.res_39_59[ACTIVATE], 3, 0), COUNTS);
}

std::string ActivateWindow(const Spd& spd) {
    constexpr std::string_view WINDOWS[] = {"8192 x tREFI", "4096 x tREFI", "2048 x tREFI"};
    return NameOf(Bits(spd.res_39_59[ACTIVATE], 5, 4), WINDOWS);
}

constexpr CFieldDecoder<Spd> FIELDS[] = {
    {"Features", "RZQ/6 drive", [](const Spd& spd) { return YesNo(Bit(spd.opt_features, 0)); }},
    {"Features", "RZQ/7 drive", [](const Spd& spd) { return YesNo(Bit(spd.opt_features, 1)); }},
    {"Features", "DLL-off mode", [](const Spd& spd) { return YesNo(Bit(spd.opt_features, 7)); }},
    {"Features", "Temperature range", TemperatureRange},
    {"Features", "Refresh above 85 degrees C", RefreshAbove85},
    {"Features", "Auto self-refresh",
     [](const Spd& spd) { return YesNo(Bit(spd.therm_ref_opt, 2)); }},
    {"Features", "On-die thermal sensor readout",
     [](const Spd& spd) { return YesNo(Bit(spd.therm_ref_opt, 3)); }},
    {"Features", "Partial array self-refresh",
     [](const Spd& spd) { return YesNo(Bit(spd.therm_ref_opt, 7)); }},
    {"Features", "Thermal sensor on the module", ThermalSensor},
    {"Features", "Device type",
     [](const Spd& spd) -> std::string {
         return Bit(spd.device_type, 7) ? "non-standard" : "standard monolithic";
     }},
    {"Features", "Dies in a device", DieCount},
    {"Features", "Signal loading", SignalLoading},
    {"Features", "Maximum activate count", ActivateCount},
    {"Features", "Maximum activate window", ActivateWindow},
};

}  // namespace

CSpdFields SpdFeatureFields() {
    return FIELDS;
}
