#include "boards/sim/sim_clock.h"

#include <chrono>
#include <utility>

#include "framework/diag_exception.h"

namespace {

constexpr uint64_t NS_PER_S = 1'000'000'000;

}  // namespace

uint64_t CSimClock::SteadyNs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

CSimClock::CSimClock(uint32_t bus_hz, CWallTime wall) : m_bus_hz(bus_hz), m_wall(std::move(wall)) {
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
