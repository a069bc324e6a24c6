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
constexpr unsigned int MODE = 0x0007;
constexpr unsigned int CONTINUOUSLY = 0x0004;  // of the mode, unless it is this bit alone
constexpr uint16_t OVERFLOWN = 0x0001;
constexpr uint16_t CONVERTED = 0x0002;
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

// A conversion has not ended by the next access, but by the second one to its flag: so a
// cleared flag shows, and who waits for the flag sees it come.
void CSimIna220::HaveRead(uint8_t pointer) {
    if (pointer == POWER) {
        SetConverted(false);
        m_is_converting = m_is_converting || IsContinuous();
    } else if (pointer == BUS_VOLTAGE && m_is_converting) {
        SetConverted(true);
        m_is_converting = false;
    }
}

void CSimIna220::HaveWritten(uint8_t pointer) {
    if (pointer != CONFIG) {
        return;
    }
    const unsigned int mode = Value(CONFIG) & MODE;
    m_is_converting = mode != 0 && mode != CONTINUOUSLY;  // not powered down, nor converter off
    if (m_is_converting) {
        SetConverted(false);
    }
}

bool CSimIna220::IsContinuous() const {
    return (Value(CONFIG) & MODE) > CONTINUOUSLY;
}

void CSimIna220::SetConverted(bool converted) {
    SetValue(BUS_VOLTAGE, static_cast<uint16_t>((Value(BUS_VOLTAGE) & ~unsigned{CONVERTED}) |
                                                (converted ? CONVERTED : 0U)));
}
