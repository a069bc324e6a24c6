// How slowly a simulated bus runs for those who use it, so that long commands
// can be watched and stopped as on the hardware. It changes nothing of what
// happens on the bus.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

class CSimPace {
  public:
    static constexpr uint32_t MAX_PERCENT = 10'000;

    // In percent of real time: 0 never sleeps, 100 is as slow as the hardware.
    // Throws CDiagException above MAX_PERCENT.
    void Set(uint32_t percent);
    uint32_t Get() const { return m_percent; }

    // Sleeps for as much of `ns` as the pace asks for, in whole milliseconds;
    // what is left over counts the next time.
    void Pass(uint64_t ns);

  private:
    uint64_t TakeDueMs(uint64_t ns);

    std::mutex m_lock;
    std::atomic<uint32_t> m_percent{0};
    uint64_t m_owed_ns = 0;  // less than a millisecond
};
