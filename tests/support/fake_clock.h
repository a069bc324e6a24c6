// A clock that only moves when somebody sleeps on it or a test moves it.
#pragma once

#include <atomic>
#include <vector>

#include "host/diag_clock.h"

class CFakeClock : public IDiagClock {
  public:
    CFakeClock() { SetDiagClock(this); }
    ~CFakeClock() override { SetDiagClock(nullptr); }

    uint64_t NowMs() override { return m_now; }
    void SleepMs(unsigned int ms) override {
        m_now += ms;
        ++m_sleeps;
    }
    void Advance(uint64_t ms) { m_now += ms; }
    unsigned int Sleeps() const { return m_sleeps; }

  private:
    std::atomic<uint64_t> m_now{0};
    std::atomic<unsigned int> m_sleeps{0};
};
