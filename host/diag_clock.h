// The clock that MsSleep and the timed tests run on, replaceable so that no
// test has to wait.
#pragma once

#include <cstdint>

class IDiagClock {
  public:
    virtual ~IDiagClock() = default;
    // Milliseconds since an arbitrary start; never goes back.
    virtual uint64_t NowMs() = 0;
    virtual void SleepMs(unsigned int ms) = 0;
};

IDiagClock& GetDiagClock();
// Replaces the clock (not owned); null puts the real one back.
void SetDiagClock(IDiagClock* clock);
