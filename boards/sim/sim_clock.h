// The time on one simulated bus: what its bits took on the wire and what was
// waited for. It does not depend on how fast this program runs, so that the
// same commands always meet the same busy chips.
#pragma once

#include <atomic>
#include <cstdint>

class CSimClock {
  public:
    // Throws CDiagException for a bus of 0 Hz.
    explicit CSimClock(uint32_t bus_hz);

    void AddBits(uint64_t bits) { m_bits += bits; }
    void Wait(uint64_t ms) { m_waited_ms += ms; }
    uint64_t WireNs() const;
    uint64_t WaitedMs() const { return m_waited_ms; }
    uint64_t NowNs() const;

  private:
    const uint32_t m_bus_hz;
    std::atomic<uint64_t> m_bits{0};
    std::atomic<uint64_t> m_waited_ms{0};
};
