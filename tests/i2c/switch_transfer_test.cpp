// Transfers through switches.
#include <cstring>

#include "tests/i2c/switch_test.h"
#include "tests/support/fake_switch.h"

namespace {

class I2cSwitchTransfer : public CThreeSwitchTest {
  protected:
    // The transfers that arrive are noted in the journal.
    I2cSwitchTransfer() {
        m_bus.OnTransfer([this](const CI2cXfrReq& req) {
            m_arrived = &req;
            m_journal.Note("i2c-0: I2cTrans(" + std::to_string(req.saddr) + ")");
        });
    }

    // What one transfer through `sw` brings about.
    CEntries EntriesOf(CJournalSwitch& sw, int8_t switch_ch) {
        CI2cXfrReq req;
        req.saddr = 80;
        req.switch_ch = switch_ch;
        m_bus.Answer({80});
        m_journal.Clear();
        EXPECT_TRUE(sw.I2cTrans(req));
        return m_journal.Entries();
    }

    const CEntries m_transfer = {Call("i2c-0: I2cTrans(80)")};
    const CI2cXfrReq* m_arrived = nullptr;
};

TEST_F(I2cSwitchTransfer, ArrivesUnchangedOnTheBus) {
    uint8_t data[4] = {};
    const CI2cXfrReq before = FullRequest(data);
    for (CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        for (const uint8_t mode : Bytes{0, 1, 2, 3}) {
            sw->SetPathConfigMode(mode);
            CI2cXfrReq req = before;
            EXPECT_FALSE(sw->I2cTrans(req));
            EXPECT_EQ(m_arrived, &req) << sw->GetName();
            EXPECT_EQ(Describe(m_bus.Seen().back()), Describe(before));
            EXPECT_EQ(m_bus.Seen().back().data, data);
            EXPECT_EQ(Describe(req), Describe(before));
        }
    }
    EXPECT_EQ(m_bus.Seen().size(), 12U);
}

TEST_F(I2cSwitchTransfer, ArrivesUnchangedWhenItIsDirect) {
    uint8_t data[4] = {};
    const CI2cXfrReq before = FullRequest(data);
    for (CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        CI2cXfrReq req = before;
        EXPECT_FALSE(sw->DirectI2cTrans(req));
        EXPECT_EQ(m_arrived, &req) << sw->GetName();
        EXPECT_EQ(Describe(m_bus.Seen().back()), Describe(before));
        EXPECT_EQ(m_bus.Seen().back().data, data);
    }
}

TEST_F(I2cSwitchTransfer, BringsBackTheResultAndWhatTheBusLeft) {
    uint8_t data = 0;
    CI2cXfrReq req;
    req.saddr = 0x50;
    req.dir = 1;
    req.tsize = 1;
    req.data = &data;
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {0xA5}, .switch_ch = 0});
    m_bus.Expect({.saddr = 0x50,
                  .read = true,
                  .data = {0},
                  .ok = false,
                  .errmsg = "no acknowledge",
                  .switch_ch = 0});
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {0x5A}, .switch_ch = 0});

    EXPECT_TRUE(m_low.I2cTrans(req));
    EXPECT_EQ(data, 0xA5);
    EXPECT_FALSE(m_low.I2cTrans(req));
    EXPECT_STREQ(req.errmsg, "no acknowledge");
    EXPECT_TRUE(m_low.DirectI2cTrans(req));
    EXPECT_EQ(data, 0x5A);
}

TEST_F(I2cSwitchTransfer, TouchesNoChannelInModes0To2) {
    for (const uint8_t mode : Bytes{0, 1, 2, 7}) {
        m_top.SetSwMode(mode);
        for (CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
            EXPECT_EQ(EntriesOf(*sw, 1), m_transfer);
            EXPECT_EQ(EntriesOf(*sw, -1), m_transfer);
        }
    }
}

TEST_F(I2cSwitchTransfer, AnnouncesTheChannelOfTheDeviceInMode3) {
    m_mid.SetPathConfigMode(3);
    const CEntries announced = {
        Info("Setting up I2C path for deivce. end channel=5\n"),
        Trace("(mid-2): I2C path configuraiton skipped!\n"),
    };
    EXPECT_EQ(EntriesOf(m_mid, 5), announced + m_transfer);
}

TEST_F(I2cSwitchTransfer, AnnouncesChannel0OfADeviceInMode3) {
    m_top.SetPathConfigMode(3);
    const CEntries announced = {
        Info("Setting up I2C path for deivce. end channel=0\n"),
        Trace("(top-1): I2C path configuraiton skipped!\n"),
    };
    EXPECT_EQ(EntriesOf(m_top, 0), announced + m_transfer);
}

TEST_F(I2cSwitchTransfer, AnnouncesItsOwnUpstreamChannelInMode3) {
    m_mid.SetPathConfigMode(3);
    m_low.SetPathConfigMode(3);
    EXPECT_EQ(EntriesOf(m_mid, -1),
              (CEntries{Info("Setting up I2C path for switch. on channel=1\n"),
                        Trace("(mid-2): I2C path configuraiton skipped!\n")} +
               m_transfer));
    EXPECT_EQ(EntriesOf(m_low, -1),
              (CEntries{Info("Setting up I2C path for switch. on channel=0\n"),
                        Trace("(low-3): I2C path configuraiton skipped!\n")} +
               m_transfer));
}

TEST_F(I2cSwitchTransfer, AnnouncesThatItIsOnTheRootBusInMode3) {
    m_top.SetPathConfigMode(3);
    EXPECT_EQ(EntriesOf(m_top, -1), CEntries{Info("current switch on root bus\n")} + m_transfer);
}

// No mode of the library's own selects a channel here; the result of opening
// the path would not matter if one did.
TEST_F(I2cSwitchTransfer, GoesOnWhenThePathCannotBeOpened) {
    m_top.m_sw_mode = true;
    m_top.m_auto_path = 1;
    m_top.FailAt("SelChannel");
    EXPECT_EQ(EntriesOf(m_top, 1),
              (CEntries{Info("Setting up I2C path for deivce. end channel=1\n"),
                        Trace("(top-1): select channel"), Call("top-1: SelChannel(1)")} +
               m_transfer));
}

TEST_F(I2cSwitchTransfer, OpensItsUpstreamChannelOnItselfForASwitch) {
    m_mid.m_sw_mode = true;
    m_mid.m_auto_path = 1;
    EXPECT_EQ(EntriesOf(m_mid, -1),
              (CEntries{Info("Setting up I2C path for switch. on channel=1\n"),
                        Trace("(mid-2): enable upstream switch top-1 channel = 1\n"),
                        Trace("(top-1): select channel"), Call("top-1: SelChannel(1)"),
                        Trace("(mid-2): select channel"), Call("mid-2: SelChannel(1)")} +
               m_transfer));
}

TEST_F(I2cSwitchTransfer, IsAnnouncedByTheSwitchThatItEntersAlone) {
    m_top.SetSwMode(3);
    EXPECT_EQ(EntriesOf(m_low, 1),
              (CEntries{Info("Setting up I2C path for deivce. end channel=1\n"),
                        Trace("(low-3): I2C path configuraiton skipped!\n")} +
               m_transfer));
    m_low.SetPathConfigMode(1);
    EXPECT_EQ(EntriesOf(m_low, 1), m_transfer);
}

TEST_F(I2cSwitchTransfer, IsNotAnnouncedDuringAProbe) {
    m_mid.SetPathConfigMode(3);
    m_mid.m_is_probing = true;
    EXPECT_EQ(EntriesOf(m_mid, 1), m_transfer);
    EXPECT_EQ(EntriesOf(m_mid, -1), m_transfer);
}

TEST_F(I2cSwitchTransfer, IsNotAnnouncedWhenItIsDirect) {
    m_top.SetSwMode(3);
    CI2cXfrReq req;
    req.saddr = 80;
    m_bus.Answer({80});
    m_journal.Clear();
    EXPECT_TRUE(m_low.DirectI2cTrans(req));
    EXPECT_EQ(m_journal.Entries(), m_transfer);
}

TEST_F(I2cSwitchTransfer, IsNotAnnouncedWithoutAnUpstreamDevice) {
    CJournalSwitch mux(m_journal, "mux", 9, 0x77);
    mux.SetPathConfigMode(3);
    m_journal.Clear();
    CI2cXfrReq req;
    EXPECT_FALSE(mux.I2cTrans(req));
    EXPECT_EQ(m_journal.Entries(),
              CEntries{ArgError("(mux-9): Inproper parent object for switch!\n")});
}

TEST_F(I2cSwitchTransfer, GoesDirectlyThroughAnUpstreamSwitch) {
    auto* upper = new CFakeSwitch(m_journal, "upper", 0x73);
    m_bus.AddChild(upper, CDiagObj::NO_SORT);
    CJournalSwitch& sw = Hang(*upper, new CJournalSwitch(m_journal, "mux", 9, 0x74, 2, 0));
    CI2cXfrReq req;
    req.saddr = 80;

    EXPECT_TRUE(sw.I2cTrans(req));
    EXPECT_TRUE(sw.DirectI2cTrans(req));
    upper->Fail();
    EXPECT_FALSE(sw.I2cTrans(req));
    EXPECT_FALSE(sw.DirectI2cTrans(req));

    const std::vector<std::string> calls(4, "upper-0: DirectI2cTrans(80)");
    EXPECT_EQ(m_journal.Calls(), calls);
}

// A bus on which a direct transfer tells itself apart.
class CDirectBus : public CScriptedBus {
  public:
    bool DirectI2cTrans(CI2cXfrReq&) override {
        ++direct;
        return false;
    }
    int direct = 0;
};

TEST_F(I2cSwitchTransfer, IsNeverDirectOnABusThatIsNoSwitch) {
    CDirectBus bus;
    bus.Answer({80});
    CJournalSwitch& sw = Hang(bus, new CJournalSwitch(m_journal, "mux", 9, 0x74));
    CI2cXfrReq req;
    req.saddr = 80;
    EXPECT_TRUE(sw.I2cTrans(req));
    EXPECT_TRUE(sw.DirectI2cTrans(req));
    EXPECT_EQ(bus.direct, 0);
    EXPECT_EQ(bus.Seen().size(), 2U);
}

TEST_F(I2cSwitchTransfer, FindsTheSwitchAboveAChannelThatIsADevice) {
    auto* channel = new CDiagDevice("ch-node", "a channel", TDEVICE);
    m_top.AddChild(channel, CDiagObj::NO_SORT);
    CJournalSwitch& sw = Hang(*channel, new CJournalSwitch(m_journal, "mux", 9, 0x74, 2, 0));
    EXPECT_EQ(EntriesOf(sw, 0), m_transfer);
    EXPECT_EQ(sw.m_pDev, &m_top);
}

TEST_F(I2cSwitchTransfer, LooksForTheUpstreamDeviceAgainWhenItIsDirect) {
    CScriptedBus other("other");
    m_mid.m_pDev = &other;
    CI2cXfrReq req;
    req.saddr = 80;
    m_bus.Answer({80});
    EXPECT_TRUE(m_mid.DirectI2cTrans(req));
    EXPECT_EQ(m_mid.m_pDev, &m_top);
    EXPECT_TRUE(other.Seen().empty());
}

TEST_F(I2cSwitchTransfer, TakesNoLock) {
    const CGuard<CMutex> bus(m_bus.m_lock);
    const CGuard<CMutex> top(m_top.m_lock);
    const CGuard<CMutex> mid(m_mid.m_lock);
    EXPECT_EQ(EntriesOf(m_mid, 1), m_transfer);
}

}  // namespace
