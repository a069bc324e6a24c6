// How a simulated bus keeps to a pace: what it sleeps, on a clock that only
// moves when somebody sleeps.
#include "boards/sim/sim_pace.h"

#include "boards/sim/sim_device.h"
#include "tests/boards/sim/sim_test.h"
#include "tests/support/bytes.h"
#include "tests/support/fake_clock.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/thrown_text.h"

namespace {

constexpr uint64_t MS = 1'000'000;

TEST(SimPace, SleepsNeverUnlessAsked) {
    CFakeClock clock;
    CSimPace pace;
    EXPECT_EQ(pace.Get(), 0U);
    pace.Pass(1000 * MS);
    EXPECT_EQ(clock.Sleeps(), 0U);
}

TEST(SimPace, SleepsThePercentageThatIsSet) {
    const std::vector<std::pair<uint32_t, uint64_t>> slept = {
        {1, 1}, {50, 50}, {100, 100}, {250, 250}, {10'000, 10'000}};
    for (const auto& [percent, ms] : slept) {
        CFakeClock clock;
        CSimPace pace;
        pace.Set(percent);
        pace.Pass(100 * MS);
        EXPECT_EQ(clock.NowMs(), ms) << percent;
    }
}

TEST(SimPace, AddsUpWhatIsBelowAMillisecond) {
    CFakeClock clock;
    CSimPace pace;
    pace.Set(100);
    for (int i = 0; i < 9; ++i) {
        pace.Pass(MS / 10);
    }
    EXPECT_EQ(clock.Sleeps(), 0U);
    pace.Pass(MS / 10);
    EXPECT_EQ(clock.Sleeps(), 1U);
    EXPECT_EQ(clock.NowMs(), 1U);
    pace.Pass(MS * 7 / 4);
    EXPECT_EQ(clock.NowMs(), 2U);
    pace.Pass(MS / 4);
    EXPECT_EQ(clock.NowMs(), 3U);
}

TEST(SimPace, ForgetsWhatItOwesWhenItIsSet) {
    CFakeClock clock;
    CSimPace pace;
    pace.Set(100);
    pace.Pass(MS - 1);
    pace.Set(100);
    pace.Pass(1);
    EXPECT_EQ(clock.Sleeps(), 0U);
}

TEST(SimPace, RefusesMoreThanAHundredfoldAndStaysAsItWas) {
    CSimPace pace;
    pace.Set(10'000);
    EXPECT_EQ(ThrownText([&] { pace.Set(10'001); }), "bad pace 10001: 10000 percent at most");
    EXPECT_EQ(pace.Get(), 10'000U);
}

class SimBusPace : public CSimTest {
  protected:
    CFakeClock m_real;
};

TEST_F(SimBusPace, IsAsFastAsPossibleAtFirst) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, {0x00}, 255).size(), 255U);
    m_bus.WaitMs(5);
    EXPECT_EQ(m_real.Sleeps(), 0U);
}

TEST_F(SimBusPace, SleepsTheTimeOnTheWireAndWhatIsWaitedFor) {
    AddAt24("24c02", 0x50, Counting(256));
    m_bus.Pace().Set(100);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(Read(0x50, {0x00}, 4), (CData{0, 1, 2, 3}));
    }
    EXPECT_EQ(m_bus.GetWireNs(), 6'600'000U);
    EXPECT_EQ(m_real.NowMs(), 6U);
    m_bus.WaitMs(5);
    EXPECT_EQ(m_real.NowMs(), 11U);
}

TEST_F(SimBusPace, SleepsWhileAWriteCycleRuns) {
    AddAt24("24c02", 0x50);
    m_bus.Pace().Set(200);
    EXPECT_TRUE(Write(0x50, {0x00}, {1}));
    EXPECT_TRUE(Answers(0x50));
    EXPECT_GT(m_bus.Clock().WaitedMs(), 0U);
    EXPECT_EQ(m_real.NowMs(), m_bus.Clock().NowNs() * 2 / MS);
}

TEST_F(SimBusPace, SleepsForFailedTransfersToo) {
    m_bus.Pace().Set(10'000);
    EXPECT_FALSE(Answers(0x50));
    EXPECT_EQ(m_real.NowMs(), 11U);
}

TEST_F(SimBusPace, ChangesNothingThatHappensOnTheBus) {
    CSimBus slow("i2c-1", "slow bus", BUS_HZ);
    slow.Pace().Set(300);
    slow.Segment().Add(std::make_unique<CSimAt24>(
        *FindSimAt24Part("24c02"), 0x50, std::make_unique<CSimMemory>(m_folder / "slow", 256),
        slow.Clock()));
    AddAt24("24c02", 0x50);
    for (CSimBus* bus : {&m_bus, &slow}) {
        EXPECT_TRUE(bus->smb_write_byte(-1, 0x50, 0, 1));
        EXPECT_TRUE(bus->smb_write_byte(-1, 0x50, 1, 2));
    }
    EXPECT_GT(m_real.Sleeps(), 0U);
    EXPECT_EQ(slow.GetTransfers(), m_bus.GetTransfers());
    EXPECT_EQ(slow.GetPolls(), m_bus.GetPolls());
    EXPECT_EQ(slow.GetWireNs(), m_bus.GetWireNs());
}

class SimPaceCommand : public SimBusPace {
  protected:
    SimPaceCommand() {
        m_sim.AddBus(m_bus);
        m_sim.AddBus(m_other);
    }

    template <class... Args>
    CAnswer Call(const Args&... args) {
        m_log.Clear();
        return Send(NodeAt(m_sim, "pace"), MSG_CALL, args...);
    }
    std::string Printed() { return m_log.Joined(0xB0); }

    CSimBus m_other{"i2c-1", "another bus", BUS_HZ};
    CSimDevice m_sim;
    CLogCapture m_log;
};

TEST_F(SimPaceCommand, ShowsThePaceOfEveryBus) {
    m_other.Pace().Set(150);
    EXPECT_EQ(Call().bytes, CByteVector{0});
    EXPECT_EQ(Printed(),
              "i2c-0: pace 0, as fast as possible\n"
              "i2c-1: pace 150, takes 150 % of real time\n");
}

TEST_F(SimPaceCommand, SetsThePaceOfEveryBus) {
    EXPECT_EQ(Call(uint32_t{100}).bytes, CByteVector{0});
    EXPECT_EQ(Printed(),
              "i2c-0: pace 100, takes 100 % of real time\n"
              "i2c-1: pace 100, takes 100 % of real time\n");
    EXPECT_EQ(m_bus.Pace().Get(), 100U);
    EXPECT_EQ(Call(uint32_t{0}).bytes, CByteVector{0});
    EXPECT_EQ(m_bus.Pace().Get(), 0U);
    EXPECT_EQ(m_other.Pace().Get(), 0U);
}

TEST_F(SimPaceCommand, RefusesMoreThanAHundredfold) {
    EXPECT_EQ(Call(uint32_t{10'001}).bytes, CByteVector{2});
    EXPECT_EQ(m_log.Joined(0x30), "bad pace 10001: 10000 percent at most");
    EXPECT_EQ(m_bus.Pace().Get(), 0U);
    EXPECT_EQ(Printed(), "");
}

TEST_F(SimPaceCommand, ItsArgumentMayBeLeftOut) {
    const auto& params = NodeAt(m_sim, "pace").GetChildren();
    ASSERT_EQ(params.size(), 1U);
    COutMsg answer;
    params.front()->Query(answer);
    CInMsg fields(answer);
    uint8_t value_type = 0;
    uint8_t param_type = 0;
    fields >> value_type >> param_type;
    EXPECT_STREQ(params.front()->GetName(), "percent");
    EXPECT_EQ(value_type, VT_UINT32);
    EXPECT_EQ(param_type, PT_OPTIONAL);
}

}  // namespace
