// Opening and closing the way through switches.
#include "tests/i2c/switch_test.h"

namespace {

class I2cSwitchPath : public CThreeSwitchTest {
  protected:
    std::vector<std::string> CallsOf(const std::function<bool()>& operation, bool result) {
        m_journal.Clear();
        EXPECT_EQ(operation(), result);
        return m_journal.Calls();
    }

    using CCalls = std::vector<std::string>;
};

TEST_F(I2cSwitchPath, SelectsTheChannelOfASwitchOnTheBus) {
    EXPECT_TRUE(m_top.EnablePath(0));
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Trace("(top-1): select channel"), Call("top-1: SelChannel(0)")}));
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwitchPath, OpensTheUpperSwitchFirst) {
    EXPECT_TRUE(m_mid.EnablePath(1));
    const CEntries expected = {
        Trace("(mid-2): enable upstream switch top-1 channel = 1\n"),
        Trace("(top-1): select channel"),
        Call("top-1: SelChannel(1)"),
        Trace("(mid-2): select channel"),
        Call("mid-2: SelChannel(1)"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, OpensThreeSwitchesFromTheTopDown) {
    EXPECT_TRUE(m_low.EnablePath(1));
    const CEntries expected = {
        Trace("(low-3): enable upstream switch mid-2 channel = 0\n"),
        Trace("(mid-2): enable upstream switch top-1 channel = 1\n"),
        Trace("(top-1): select channel"),
        Call("top-1: SelChannel(1)"),
        Trace("(mid-2): select channel"),
        Call("mid-2: SelChannel(0)"),
        Trace("(low-3): select channel"),
        Call("low-3: SelChannel(1)"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, OpensNothingBelowASwitchThatFails) {
    m_top.FailAt("SelChannel");
    EXPECT_EQ(CallsOf([this] { return m_low.EnablePath(0); }, false),
              CCalls{"top-1: SelChannel(1)"});
    EXPECT_EQ(CallsOf([this] { return m_top.EnablePath(0); }, false),
              CCalls{"top-1: SelChannel(0)"});
}

TEST_F(I2cSwitchPath, SaysNoMoreOnceASwitchFailed) {
    m_mid.FailAt("SelChannel");
    EXPECT_FALSE(m_low.EnablePath(0));
    const CEntries expected = {
        Trace("(low-3): enable upstream switch mid-2 channel = 0\n"),
        Trace("(mid-2): enable upstream switch top-1 channel = 1\n"),
        Trace("(top-1): select channel"),
        Call("top-1: SelChannel(1)"),
        Trace("(mid-2): select channel"),
        Call("mid-2: SelChannel(0)"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, LeavesTheUpperSwitchesOpenWhenTheLastFails) {
    m_low.FailAt("SelChannel");
    EXPECT_EQ(CallsOf([this] { return m_low.EnablePath(0); }, false),
              (CCalls{"top-1: SelChannel(1)", "mid-2: SelChannel(0)", "low-3: SelChannel(0)"}));
    EXPECT_TRUE(m_top.IsOpen(1));
    EXPECT_TRUE(m_mid.IsOpen(0));
}

TEST_F(I2cSwitchPath, ClosesASwitchOnTheBus) {
    EXPECT_TRUE(m_top.ClearPath());
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Trace("(top-1): disable all channels"), Call("top-1: DisableChannels()")}));
}

TEST_F(I2cSwitchPath, ClosesTheLowerSwitchFirst) {
    EXPECT_TRUE(m_mid.ClearPath());
    const CEntries expected = {
        Trace("(mid-2): disable all channels"),
        Call("mid-2: DisableChannels()"),
        Trace("(mid-2): disable upstream switch top-1"),
        Trace("(top-1): disable all channels"),
        Call("top-1: DisableChannels()"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, ClosesThreeSwitchesFromTheBottomUp) {
    EXPECT_TRUE(m_low.ClearPath());
    const CEntries expected = {
        Trace("(low-3): disable all channels"),
        Call("low-3: DisableChannels()"),
        Trace("(low-3): disable upstream switch mid-2"),
        Trace("(mid-2): disable all channels"),
        Call("mid-2: DisableChannels()"),
        Trace("(mid-2): disable upstream switch top-1"),
        Trace("(top-1): disable all channels"),
        Call("top-1: DisableChannels()"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, ClosesNothingAboveASwitchThatFails) {
    m_low.FailAt("DisableChannels");
    EXPECT_FALSE(m_low.ClearPath());
    const CEntries expected = {
        Trace("(low-3): disable all channels"),
        Call("low-3: DisableChannels()"),
        SystemError("(low-3): Error when disabling upstrem channels!\n"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, FailsToCloseWhenAnUpperSwitchFails) {
    m_mid.FailAt("DisableChannels");
    EXPECT_EQ(CallsOf([this] { return m_low.ClearPath(); }, false),
              (CCalls{"low-3: DisableChannels()", "mid-2: DisableChannels()"}));
    EXPECT_EQ(m_log.Texts(0x20),
              std::vector<std::string>{"(mid-2): Error when disabling upstrem channels!\n"});
}

TEST_F(I2cSwitchPath, FailsToCloseWhenTheTopmostSwitchFails) {
    m_top.FailAt("DisableChannels");
    EXPECT_EQ(CallsOf([this] { return m_low.ClearPath(); }, false),
              (CCalls{"low-3: DisableChannels()", "mid-2: DisableChannels()",
                      "top-1: DisableChannels()"}));
    EXPECT_EQ(m_journal.Entries().back(),
              SystemError("(top-1): Error when disabling upstrem channels!\n"));
}

TEST_F(I2cSwitchPath, IsTheOperatorsInModes0And3) {
    for (const uint8_t mode : Bytes{0, 3}) {
        m_top.SetSwMode(mode);
        m_journal.Clear();
        EXPECT_TRUE(m_low.EnablePath(1));
        EXPECT_TRUE(m_low.ClearPath());
        EXPECT_EQ(m_journal.Entries(),
                  (CEntries{Trace("(low-3): I2C path configuraiton skipped!\n"),
                            Trace("(low-3): I2C path clear skipped!\n")}));
    }
}

TEST_F(I2cSwitchPath, IsLeftOpenInMode2) {
    m_low.SetPathConfigMode(2);
    m_journal.Clear();
    EXPECT_TRUE(m_low.EnablePath(1));
    EXPECT_EQ(m_journal.Calls(),
              (CCalls{"top-1: SelChannel(1)", "mid-2: SelChannel(0)", "low-3: SelChannel(1)"}));
    m_journal.Clear();
    EXPECT_TRUE(m_low.ClearPath());
    EXPECT_EQ(m_journal.Entries(), CEntries{Trace("(low-3): I2C path clear skipped!\n")});
}

TEST_F(I2cSwitchPath, IsOpenedAndClosedInAnUnknownMode) {
    m_top.SetSwMode(7);
    EXPECT_EQ(CallsOf([this] { return m_low.EnablePath(1); }, true),
              (CCalls{"top-1: SelChannel(1)", "mid-2: SelChannel(0)", "low-3: SelChannel(1)"}));
    EXPECT_EQ(CallsOf([this] { return m_low.ClearPath(); }, true),
              (CCalls{"low-3: DisableChannels()", "mid-2: DisableChannels()",
                      "top-1: DisableChannels()"}));
}

TEST_F(I2cSwitchPath, SkipsUpperSwitchesThatAreInMode0) {
    m_mid.SetPathConfigMode(0);
    m_journal.Clear();
    EXPECT_TRUE(m_low.EnablePath(1));
    EXPECT_TRUE(m_low.ClearPath());
    const CEntries expected = {
        Trace("(low-3): enable upstream switch mid-2 channel = 0\n"),
        Trace("(mid-2): I2C path configuraiton skipped!\n"),
        Trace("(low-3): select channel"),
        Call("low-3: SelChannel(1)"),
        Trace("(low-3): disable all channels"),
        Call("low-3: DisableChannels()"),
        Trace("(low-3): disable upstream switch mid-2"),
        Trace("(mid-2): I2C path clear skipped!\n"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchPath, IsLeftAloneDuringAProbe) {
    m_mid.m_is_probing = true;
    EXPECT_TRUE(m_mid.EnablePath(0));
    EXPECT_TRUE(m_mid.ClearPath());
    EXPECT_TRUE(m_journal.Entries().empty());
    EXPECT_EQ(m_mid.m_pDev, &m_top);
}

TEST_F(I2cSwitchPath, EndsAtASwitchThatIsProbing) {
    m_mid.m_is_probing = true;
    EXPECT_EQ(CallsOf([this] { return m_low.EnablePath(0); }, true),
              CCalls{"low-3: SelChannel(0)"});
    EXPECT_EQ(CallsOf([this] { return m_low.ClearPath(); }, true),
              CCalls{"low-3: DisableChannels()"});
}

TEST_F(I2cSwitchPath, NeedsAnUpstreamDeviceEvenDuringAProbe) {
    CJournalSwitch mux(m_journal, "mux", 9, 0x77);
    mux.m_is_probing = true;
    EXPECT_FALSE(mux.EnablePath(0));
    EXPECT_FALSE(mux.ClearPath());
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{ArgError("(mux-9): Inproper parent object for switch!\n"),
                        ArgError("(mux-9): Inproper parent object for switch!\n")}));
}

TEST_F(I2cSwitchPath, NeedsNoUpstreamDeviceWhenItIsTheOperators) {
    CJournalSwitch mux(m_journal, "mux", 9, 0x77);
    mux.m_auto_path = 0;
    EXPECT_TRUE(mux.EnablePath(0));
    EXPECT_TRUE(mux.ClearPath());
    mux.m_auto_path = 2;
    EXPECT_TRUE(mux.ClearPath());
    EXPECT_TRUE(m_journal.Calls().empty());
    EXPECT_EQ(mux.m_pDev, nullptr);
}

TEST_F(I2cSwitchPath, TakesNoLock) {
    const CGuard<CMutex> bus(m_bus.m_lock);
    const CGuard<CMutex> top(m_top.m_lock);
    const CGuard<CMutex> mid(m_mid.m_lock);
    EXPECT_TRUE(m_mid.EnablePath(0));
    EXPECT_TRUE(m_mid.ClearPath());
}

}  // namespace
