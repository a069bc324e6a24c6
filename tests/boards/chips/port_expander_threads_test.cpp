// Threads that write different bits of one port.
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

#include "boards/chips/port_expander.h"
#include "tests/boards/chips/register_test.h"

namespace {

// An expander that does something between reading the latch and writing it.
template <class Expander>
class CInterrupted : public Expander {
  public:
    using Expander::Expander;

    bool writeRegEntry(diag_regdata_t* data, diag_reg_st* reg, uint32_t index) override {
        if (const auto interrupt = std::exchange(m_interrupt, nullptr)) {
            interrupt();
        }
        return Expander::writeRegEntry(data, reg, index);
    }

    std::function<void()> m_interrupt;  // once
};

bool IsAsleep(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string stat;
    std::getline(file, stat);
    const size_t behind_name = stat.rfind(") ");
    return behind_name != std::string::npos && stat.at(behind_name + 2) == 'S';
}

// A thread that writes into port 0 and goes on, or waits for whom it has to.
class CWriter {
  public:
    ~CWriter() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    template <class Chip>
    void Start(Chip& chip, uint8_t val, uint8_t msk) {
        m_thread = std::thread([this, &chip, val, msk] {
            m_id = ::gettid();
            m_ok = chip.WriteIoPort(0, val, msk) != 0;
            m_done = true;
        });
        while (!m_done && (m_id == 0 || !IsAsleep(m_id))) {
            std::this_thread::yield();
        }
    }
    bool IsDone() const { return m_done; }
    bool Ended() {
        m_thread.join();
        return m_ok;
    }

  private:
    std::atomic<pid_t> m_id = 0;
    std::atomic<bool> m_done = false;
    bool m_ok = false;
    std::thread m_thread;
};

template <class Expander>
class PortExpanderThreads : public CRegisterTest {
  protected:
    static constexpr const char* PART =
        std::is_same_v<Expander, CPortExpander> ? "pca9555" : "pcf8574";
};

using Expanders = testing::Types<CPortExpander, CQuasiPortExpander>;
TYPED_TEST_SUITE(PortExpanderThreads, Expanders);

TYPED_TEST(PortExpanderThreads, LoseNoBitOfEachOther) {
    auto& chip = this->template AddChip<CInterrupted<TypeParam>>(this->PART, 0x20);
    CWriter other;
    bool came_between = true;
    chip.m_interrupt = [&] {
        other.Start(chip, 0x00, 0xF0);
        came_between = other.IsDone();
    };
    EXPECT_EQ(chip.WriteIoPort(0, 0x05, 0x0F), 1U);
    EXPECT_FALSE(came_between);
    EXPECT_TRUE(other.Ended());
    EXPECT_EQ(this->Read(chip, "output"), 0x05);
}

}  // namespace
