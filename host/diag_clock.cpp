#include "host/diag_clock.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "framework/diag_functions.h"

namespace {

class CSteadyClock : public IDiagClock {
  public:
    uint64_t NowMs() override {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    }
    void SleepMs(unsigned int ms) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    }
};

CSteadyClock g_steady_clock;
std::atomic<IDiagClock*> g_clock{&g_steady_clock};

}  // namespace

IDiagClock& GetDiagClock() {
    return *g_clock;
}

void SetDiagClock(IDiagClock* clock) {
    g_clock = clock != nullptr ? clock : &g_steady_clock;
}

void MsSleep(unsigned int ms) {
    GetDiagClock().SleepMs(ms);
}
