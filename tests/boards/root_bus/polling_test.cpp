// Waiting for the write cycle of a slave that was just written to.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "tests/boards/root_bus/tape_bus.h"
#include "tests/support/fake_clock.h"

namespace {

// Lets a test do something while somebody sleeps.
class CBusyClock : public CFakeClock {
  public:
    void OnSleep(std::function<void()> hook) { m_hook = std::move(hook); }
    void SleepMs(unsigned int ms) override {
        CFakeClock::SleepMs(ms);
        // The hook may replace itself.
        if (const std::function<void()> hook = m_hook) {
            hook();
        }
    }

  private:
    std::function<void()> m_hook;
};

class RootBusPolling : public testing::Test {
  protected:
    bool Trans(uint8_t addr, bool read, uint8_t cmd_sel, uint8_t tsize) {
        CI2cXfrReq req;
        req.saddr = addr;
        req.dir = read ? 1 : 0;
        req.cmd_sel = cmd_sel;
        req.data = m_data.data();
        req.tsize = tsize;
        const bool ok = m_bus.I2cTrans(req);
        m_errmsg = req.errmsg;
        return ok;
    }
    bool Write(uint8_t addr) { return Trans(addr, false, 1, 1); }
    bool Read(uint8_t addr) { return Trans(addr, true, 1, 1); }
    void Silence(size_t transfers, size_t msg = 0) {
        for (size_t i = 0; i < transfers; ++i) {
            m_bus.Answer(CI2cResult::NoAddrAck(msg));
        }
    }

    CBusyClock m_clock;
    CTapeBus m_bus;
    std::array<uint8_t, 4> m_data{};
    std::string m_errmsg;
};

TEST_F(RootBusPolling, AsksAWrittenAddressEveryMillisecondUntilItAnswers) {
    EXPECT_TRUE(Write(0x50));
    Silence(4);
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_bus.Tapes().size(), 1U + 4U + 1U);
    EXPECT_EQ(m_bus.Tapes()[1], m_bus.Tapes()[5]);
    EXPECT_EQ(m_clock.Sleeps(), 4U);
    EXPECT_EQ(m_clock.NowMs(), 4U);
    EXPECT_EQ(m_errmsg, "");
}

TEST_F(RootBusPolling, PollsForTheNextWriteToo) {
    EXPECT_TRUE(Write(0x50));
    Silence(2);
    EXPECT_TRUE(Write(0x50));
    Silence(3);
    EXPECT_TRUE(Write(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 5U);
}

TEST_F(RootBusPolling, AnswersInTheLastOfTwentyFivePolls) {
    EXPECT_TRUE(Write(0x50));
    Silence(25);
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 25U);
}

TEST_F(RootBusPolling, GivesUpAfterTwentyFivePolls) {
    EXPECT_TRUE(Write(0x50));
    Silence(26);
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 25U);
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50, asked 25 more times after a write");
}

TEST_F(RootBusPolling, DoesNotPollAgainOnceItGaveUp) {
    EXPECT_TRUE(Write(0x50));
    Silence(27);
    EXPECT_FALSE(Read(0x50));
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 25U);
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
}

TEST_F(RootBusPolling, DoesNotPollWhenTheWriteIsLongAgo) {
    EXPECT_TRUE(Write(0x50));
    m_clock.Advance(25);
    Silence(1);
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 0U);
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
}

TEST_F(RootBusPolling, PollsOnlyForWhatIsLeftOfTheTime) {
    EXPECT_TRUE(Write(0x50));
    m_clock.Advance(20);
    Silence(6);
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 5U);
}

// Behind a switch several chips may share the address, and one answers while
// the other is busy.
TEST_F(RootBusPolling, StillPollsAfterAnAnswerFromTheAddress) {
    EXPECT_TRUE(Write(0x50));
    EXPECT_TRUE(Read(0x50));
    Silence(3);
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 3U);
}

TEST_F(RootBusPolling, TellsThePrimitiveWhichTransfersArePolls) {
    EXPECT_TRUE(Write(0x50));
    Silence(2);
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_bus.Again(), (std::vector<bool>{false, false, true, true}));
}

TEST_F(RootBusPolling, TakesSilenceAtTheRepeatedStartAsFinal) {
    EXPECT_TRUE(Write(0x50));
    Silence(1, 1);
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(RootBusPolling, GoesOnWaitingAfterAFailureOfTheBusItself) {
    EXPECT_TRUE(Write(0x50));
    m_bus.Answer(CI2cResult::ArbLost());
    EXPECT_FALSE(Read(0x50));
    Silence(2);
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 2U);
}

TEST_F(RootBusPolling, NeverPollsAnAddressThatWasNotWritten) {
    EXPECT_TRUE(Write(0x50));
    for (uint8_t addr = 1; addr < 0x7E; ++addr) {
        if (addr != 0x50) {
            Silence(1);
            EXPECT_FALSE(Read(addr));
        }
    }
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(RootBusPolling, CommandsAloneStartNoWriteCycle) {
    EXPECT_TRUE(Trans(0x50, false, 2, 0));
    Silence(1);
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(RootBusPolling, FailedWritesStartNoWriteCycle) {
    Silence(2);
    EXPECT_FALSE(Write(0x50));
    EXPECT_FALSE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(RootBusPolling, CoversTheSmbusWrites) {
    EXPECT_TRUE(m_bus.smb_write_word(-1, 0x50, 0, 0x1234));
    Silence(3);
    uint8_t byte = 0;
    EXPECT_TRUE(m_bus.smb_read_byte(-1, 0x50, 0, &byte));
    EXPECT_EQ(m_clock.Sleeps(), 3U);
}

TEST_F(RootBusPolling, LeavesTheBusToOthersWhileItWaits) {
    EXPECT_TRUE(Write(0x50));
    Silence(1);
    bool other_ok = false;
    // The bus lock refuses a second locking from one thread, so this would
    // throw if it were held while sleeping.
    m_clock.OnSleep([&] {
        m_clock.OnSleep({});
        CI2cXfrReq req;
        req.saddr = 0x51;
        other_ok = m_bus.I2cTrans(req);
    });
    EXPECT_TRUE(Read(0x50));
    EXPECT_TRUE(other_ok);
    const std::vector<CTape> expected = {{WriteOf(0x50, {0, 0})},
                                         {WriteOf(0x50, {0}), ReadOf(0x50, 1)},
                                         {WriteOf(0x51, {})},
                                         {WriteOf(0x50, {0}), ReadOf(0x50, 1)}};
    EXPECT_EQ(m_bus.Tapes(), expected);
}

TEST_F(RootBusPolling, WaitsAfreshWhenAnotherWriteCameInBetween) {
    EXPECT_TRUE(Write(0x50));
    Silence(20);
    unsigned int sleeps = 0;
    // After 20 polls of ours another write gets in: its cycle counts from then.
    m_clock.OnSleep([&] {
        if (++sleeps == 20) {
            m_bus.smb_write_byte(-1, 0x50, 0, 1);
            Silence(25);
        }
    });
    EXPECT_TRUE(Read(0x50));
    EXPECT_EQ(m_clock.Sleeps(), 45U);
}

}  // namespace
