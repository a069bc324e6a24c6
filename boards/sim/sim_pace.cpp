#include "boards/sim/sim_pace.h"

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

namespace {

constexpr uint64_t NS_PER_MS = 1'000'000;

}  // namespace

void CSimPace::Set(uint32_t percent) {
    if (percent > MAX_PERCENT) {
        throw CDiagException("bad pace %u: %u percent at most", percent, MAX_PERCENT);
    }
    const std::lock_guard<std::mutex> guard(m_lock);
    m_percent = percent;
    m_owed_ns = 0;
}

void CSimPace::Pass(uint64_t ns) {
    // Outside the lock: who waits for one chip does not keep another waiting.
    const uint64_t due_ms = TakeDueMs(ns);
    if (due_ms != 0) {
        MsSleep(static_cast<unsigned int>(due_ms));
    }
}

uint64_t CSimPace::TakeDueMs(uint64_t ns) {
    const std::lock_guard<std::mutex> guard(m_lock);
    // In two parts, so that nothing overflows.
    m_owed_ns += ns / 100 * m_percent + ns % 100 * m_percent / 100;
    const uint64_t due_ms = m_owed_ns / NS_PER_MS;
    m_owed_ns %= NS_PER_MS;
    return due_ms;
}
