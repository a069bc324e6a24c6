#include "host/shell/run/progress_rate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr uint64_t SECOND_MS = 1000;
constexpr double FADING_MS = 5000;
// Who would take more than days left is as good as stuck.
constexpr double MOST_SECONDS = 100.0 * 3600;

// Of numbers that may be as large as they come.
uint64_t PerSecondOf(uint64_t units, uint64_t ms) {
    constexpr auto MOST = std::numeric_limits<uint64_t>::max();
    const long double rate =
        static_cast<long double>(units) * SECOND_MS / static_cast<long double>(ms);
    return rate < static_cast<long double>(MOST) ? static_cast<uint64_t>(rate) : MOST;
}

}  // namespace

void CProgressRate::Look(uint64_t now, uint64_t done) {
    const CSample sample{now, done};
    if (!m_last.has_value()) {
        Restart(sample);
        return;
    }
    const CSample last = *m_last;
    m_last = sample;
    // Some tests go back, to do a part once more.
    if (done < last.done) {
        Restart(sample);
        return;
    }
    const uint64_t elapsed = now - last.time;
    if (elapsed > LOST_AFTER_MS) {
        m_from = sample;
        return;
    }
    const double kept = std::exp(-static_cast<double>(elapsed) / FADING_MS);
    m_recent_units = m_recent_units * kept + static_cast<double>(done - last.done);
    m_recent_ms = m_recent_ms * kept + static_cast<double>(elapsed);

    const uint64_t measured = now - m_from.time;
    if (measured >= SECOND_MS || (m_in_first && measured > 0)) {
        m_per_second = PerSecondOf(done - m_from.done, measured);
        if (measured >= SECOND_MS) {
            m_from = sample;
            m_in_first = false;
        }
    }
}

std::optional<uint64_t> CProgressRate::SecondsFor(uint64_t remaining) const {
    if (m_recent_ms < static_cast<double>(SECOND_MS) || m_recent_units <= 0) {
        return std::nullopt;
    }
    const double seconds = static_cast<double>(remaining) * m_recent_ms / m_recent_units /
                           static_cast<double>(SECOND_MS);
    return seconds < MOST_SECONDS
               ? std::optional(std::max<uint64_t>(static_cast<uint64_t>(std::lround(seconds)), 1))
               : std::nullopt;
}

void CProgressRate::Restart(const CSample& sample) {
    m_last = sample;
    m_from = sample;
    m_recent_units = 0;
    m_recent_ms = 0;
}
