// The time on one simulated bus: the time that its bits took on the wire, plus
// the real time that passed, so that both long transfers and waiting let a
// write cycle end.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

class CSimClock {
  public:
    // Nanoseconds since an arbitrary start; never goes back.
    using CWallTime = std::function<uint64_t()>;
    static uint64_t SteadyNs();

    // Throws CDiagException for a bus of 0 Hz.
    explicit CSimClock(uint32_t bus_hz, CWallTime wall = SteadyNs);

    void AddBits(uint64_t bits) { m_bits += bits; }
    uint64_t WireNs() const;
    uint64_t NowNs() const { return WireNs() + m_wall(); }

  private:
    const uint32_t m_bus_hz;
    const CWallTime m_wall;
    std::atomic<uint64_t> m_bits{0};
};
