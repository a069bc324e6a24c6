#include "boards/sim/sim_ina220.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr uint8_t CONFIG = 0;
constexpr uint8_t SHUNT_VOLTAGE = 1;
constexpr uint8_t BUS_VOLTAGE = 2;
constexpr uint8_t POWER = 3;
constexpr uint8_t CURRENT = 4;
constexpr uint8_t CALIBRATION = 5;

constexpr uint16_t CONFIG_RESET = 0x8000;
constexpr uint16_t OVERFLOWN = 0x0001;
constexpr int BUS_SHIFT = 3;

}  // namespace

void CSimIna220::Refresh() {
    if ((Value(CONFIG) & CONFIG_RESET) != 0) {
        Reset(CONFIG);
        Reset(CALIBRATION);
    }
    const int64_t shunt = static_cast<int16_t>(Value(SHUNT_VOLTAGE));
    const int64_t current = shunt * Value(CALIBRATION) / 4096;
    const int64_t power = std::abs(current) * (Value(BUS_VOLTAGE) >> BUS_SHIFT) / 5000;
    const int64_t current_shown = std::clamp<int64_t>(current, INT16_MIN, INT16_MAX);
    const int64_t power_shown = std::min<int64_t>(power, UINT16_MAX);
    SetValue(CURRENT, static_cast<uint16_t>(current_shown));
    SetValue(POWER, static_cast<uint16_t>(power_shown));
    const bool overflown = current != current_shown || power != power_shown;
    SetValue(BUS_VOLTAGE, static_cast<uint16_t>((Value(BUS_VOLTAGE) & ~unsigned{OVERFLOWN}) |
                                                (overflown ? OVERFLOWN : 0U)));
}
