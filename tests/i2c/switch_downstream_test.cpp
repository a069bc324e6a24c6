// What a switch hands on to the switches below it: closing channels and
// forgetting devices.
#include "tests/i2c/switch_test.h"

namespace {

using CCalls = std::vector<std::string>;
using CAddresses = std::list<uint8_t>;

class I2cSwitchDownstream : public CThreeSwitchTest {};

TEST_F(I2cSwitchDownstream, IsClosedThroughTheChannelThatLeadsThere) {
    EXPECT_TRUE(m_top.DisableAllSwitches());
    const CEntries expected = {
        Call("top-1: SelChannel(1)"),
        Call("mid-2: SelChannel(0)"),
        Call("mid-2: DisableChannels()"),
        Call("top-1: DisableChannels()"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwitchDownstream, IsClosedSwitchBySwitch) {
    AddSwitch(m_top, 0, "left", 4, 0x73);
    AddSwitch(m_top, 1, "right", 5, 0x74);
    EXPECT_TRUE(m_top.DisableAllSwitches());
    const CCalls expected = {
        "top-1: SelChannel(0)", "top-1: DisableChannels()", "top-1: SelChannel(1)",
        "mid-2: SelChannel(0)", "mid-2: DisableChannels()", "top-1: DisableChannels()",
        "top-1: SelChannel(1)", "top-1: DisableChannels()",
    };
    EXPECT_EQ(m_journal.Calls(), expected);
}

TEST_F(I2cSwitchDownstream, IsNothingBelowTheLastSwitch) {
    m_low.getChannelMenu(0)->AddChild(new CDiagDevice("slave", "no switch", TDEVICE),
                                      CDiagObj::NO_SORT);
    EXPECT_TRUE(m_low.DisableAllSwitches());
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchDownstream, IsClosedAsFarAsItGoesWhenSwitchesFail) {
    for (CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        sw->Fail();
    }
    EXPECT_TRUE(m_top.DisableAllSwitches());
    EXPECT_EQ(m_journal.Calls(), (CCalls{"top-1: SelChannel(1)", "mid-2: SelChannel(0)",
                                         "mid-2: DisableChannels()", "top-1: DisableChannels()"}));
}

TEST_F(I2cSwitchDownstream, IsClosedByTheBus) {
    EXPECT_TRUE(m_bus.DisableAllSwitches());
    const CEntries expected = {
        Print("(i2c-0:DisableAllSwitches): turn off all downstream channels for immediate switch "
              "top-1 \n"),
        Call("top-1: DisableChannels()"),
        Print("(i2c-0:DisableAllSwitches): turn off downstream switches for switch top-1\n"),
        Call("top-1: SelChannel(1)"),
        Call("mid-2: SelChannel(0)"),
        Call("mid-2: DisableChannels()"),
        Call("top-1: DisableChannels()"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchDownstream, IsForgottenFromTheTopDown) {
    m_top.ClearAllDeviceAddrList();
    const CEntries expected = {
        Call("top-1: ClearMyDeviceAddrList()"),
        Call("mid-2: ClearMyDeviceAddrList()"),
        Call("low-3: ClearMyDeviceAddrList()"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchDownstream, IsForgottenOnEveryChannelInOrder) {
    AddSwitch(m_top, 0, "left", 4, 0x73);
    AddSwitch(m_top, 1, "right", 5, 0x74);
    m_top.ClearAllDeviceAddrList();
    EXPECT_EQ(m_journal.Calls(),
              (CCalls{"top-1: ClearMyDeviceAddrList()", "left-4: ClearMyDeviceAddrList()",
                      "mid-2: ClearMyDeviceAddrList()", "low-3: ClearMyDeviceAddrList()",
                      "right-5: ClearMyDeviceAddrList()"}));
}

TEST_F(I2cSwitchDownstream, IsForgottenWhenTheBusForgets) {
    m_bus.AddMyDeviceAddr(0x20);
    m_top.AddMyDeviceAddr(1, 0x71);
    m_low.AddMyDeviceAddr(0, 0x50);

    m_bus.ClearAllDeviceAddrList();

    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    EXPECT_TRUE(m_top.GetMyDeviceAddrList(1).empty());
    EXPECT_TRUE(m_low.GetMyDeviceAddrList(0).empty());
}

TEST_F(I2cSwitchDownstream, IsForgottenWithoutWhatIsUpstream) {
    m_top.AddUpstreamDeviceAddr(0x20);
    m_top.ClearAllDeviceAddrList();
    EXPECT_TRUE(m_top.isOnUpstreamBus(0x20));
}

// What was seen above a switch.

class I2cSwitchUpstream : public CThreeSwitchTest {};

TEST_F(I2cSwitchUpstream, HoldsTheAddressesAddedToIt) {
    EXPECT_FALSE(m_top.isOnUpstreamBus(0x20));
    m_top.AddUpstreamDeviceAddr(0x20);
    m_top.AddUpstreamDeviceAddr(0x7D);
    EXPECT_TRUE(m_top.isOnUpstreamBus(0x20));
    EXPECT_TRUE(m_top.isOnUpstreamBus(0x7D));
    EXPECT_FALSE(m_top.isOnUpstreamBus(0x21));
    EXPECT_EQ(m_top.m_upstream_device_addr, (CAddresses{0x20, 0x7D}));
    EXPECT_FALSE(m_mid.isOnUpstreamBus(0x20));
}

TEST_F(I2cSwitchUpstream, IsTheListOfTheBusForASwitchOnTheBus) {
    m_bus.AddMyDeviceAddr(0x20);
    m_top.AddUpstreamDeviceAddr(0x21);
    m_top.AddMyDeviceAddr(0, 0x22);
    for (const uint8_t level : Bytes{0, 1, 2, 3}) {
        EXPECT_TRUE(m_top.isOnParentBus(0x20, level)) << unsigned{level};
        EXPECT_FALSE(m_top.isOnParentBus(0x21, level)) << unsigned{level};
        EXPECT_FALSE(m_top.isOnParentBus(0x22, level)) << unsigned{level};
    }
}

// Where each list of the three switches and the bus holds an address of its
// own: which of them are seen from the lowest switch.
class I2cSwitchParentBus : public CThreeSwitchTest {
  protected:
    I2cSwitchParentBus() {
        m_bus.AddMyDeviceAddr(0x10);
        m_top.AddUpstreamDeviceAddr(0x11);
        m_top.AddMyDeviceAddr(0, 0x12);
        m_top.AddMyDeviceAddr(1, 0x13);
        m_mid.AddUpstreamDeviceAddr(0x14);
        m_mid.AddMyDeviceAddr(0, 0x15);
        m_mid.AddMyDeviceAddr(1, 0x16);
        m_low.AddUpstreamDeviceAddr(0x17);
        m_low.AddMyDeviceAddr(0, 0x18);
    }

    static Bytes SeenFrom(CJournalSwitch& sw, uint8_t level) {
        Bytes seen;
        for (uint8_t addr = 0x10; addr <= 0x18; ++addr) {
            if (sw.isOnParentBus(addr, level)) {
                seen.push_back(addr);
            }
        }
        return seen;
    }
};

TEST_F(I2cSwitchParentBus, IsWhatTheSwitchItselfSawUpstreamAtLevel0) {
    EXPECT_EQ(SeenFrom(m_low, 0), Bytes{0x17});
    EXPECT_EQ(SeenFrom(m_mid, 0), Bytes{0x14});
}

TEST_F(I2cSwitchParentBus, IsWhatTheUpperSwitchSawUpstreamAtLevel1) {
    EXPECT_EQ(SeenFrom(m_low, 1), Bytes{0x14});
    EXPECT_EQ(SeenFrom(m_mid, 1), Bytes{0x11});
}

// Where the walk ends at a switch, only what that saw upstream counts.
TEST_F(I2cSwitchParentBus, IsWhatTheTopmostSwitchSawUpstreamAtLevel2) {
    EXPECT_EQ(SeenFrom(m_low, 2), Bytes{0x11});
}

TEST_F(I2cSwitchParentBus, IsTheUpperChannelAndTheBusBelowTwoSwitchesAtLevel2) {
    EXPECT_EQ(SeenFrom(m_mid, 2), (Bytes{0x10, 0x13}));
    EXPECT_EQ(SeenFrom(m_mid, 3), (Bytes{0x10, 0x13}));
}

// The channel asked about is this switch's own at every switch on the way.
TEST_F(I2cSwitchParentBus, IsTheSameChannelOfEverySwitchAndTheBusAtLevel3) {
    EXPECT_EQ(SeenFrom(m_low, 3), (Bytes{0x10, 0x12, 0x15}));
    EXPECT_EQ(SeenFrom(m_low, 4), (Bytes{0x10, 0x12, 0x15}));
}

}  // namespace
