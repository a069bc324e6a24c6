#include "boards/sim/sim_clock.h"

#include "framework/diag_exception.h"

namespace {

constexpr uint64_t NS_PER_S = 1'000'000'000;
constexpr uint64_t NS_PER_MS = 1'000'000;

}  // namespace

CSimClock::CSimClock(uint32_t bus_hz) : m_bus_hz(bus_hz) {
    if (bus_hz == 0) {
        throw CDiagException("a bus cannot run at 0 Hz");
    }
}

// From the sum of all bits, so that rounding does not add up; in two parts, so
// that nothing overflows.
uint64_t CSimClock::WireNs() const {
    const uint64_t bits = m_bits;
    return bits / m_bus_hz * NS_PER_S + bits % m_bus_hz * NS_PER_S / m_bus_hz;
}

uint64_t CSimClock::NowNs() const {
    return WireNs() + m_waited_ms * NS_PER_MS;
}
