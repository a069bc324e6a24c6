// Where a switch finds the bus or switch that it hangs on.
#include "tests/i2c/switch_test.h"

namespace {

class I2cSwitchParent : public CSwitchTest {
  protected:
    // A device that is neither a bus nor a switch, below `parent`.
    static CDiagDevice& AddDevice(CDiagObj& parent) {
        auto* device = new CDiagDevice("ch-node", "a device", TDEVICE);
        parent.AddChild(device, CDiagObj::NO_SORT);
        return *device;
    }
    static CDiagMenu& AddMenu(CDiagObj& parent) {
        auto* menu = new CDiagMenu(TMENU, "menu", "a menu");
        parent.AddChild(menu, CDiagObj::NO_SORT);
        return *menu;
    }
    CJournalSwitch& HangBelow(CDiagObj& parent) {
        return Hang(parent, new CJournalSwitch(m_journal, "mux", 1, 0x70, 2, 1));
    }

    const CEntries m_no_parent = {ArgError("(mux-1): Inproper parent object for switch!\n")};
    const CEntries m_wrong_parent = {
        ArgError("(mux-1): Inproper parent object for switch channel!\n")};
};

TEST_F(I2cSwitchParent, IsTheBusItHangsOn) {
    EXPECT_EQ(HangBelow(m_bus).GetI2cParentDevice(), &m_bus);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchParent, IsTheSwitchWhoseChannelMenuItHangsOn) {
    CJournalSwitch& top = AddSwitch("top", 0, 0x71);
    EXPECT_EQ(HangBelow(*top.getChannelMenu(1)).GetI2cParentDevice(), &top);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchParent, IsTheSwitchItHangsOnDirectly) {
    CJournalSwitch& top = AddSwitch("top", 0, 0x71);
    EXPECT_EQ(HangBelow(top).GetI2cParentDevice(), &top);
}

TEST_F(I2cSwitchParent, IsFoundThroughMenusInBetween) {
    EXPECT_EQ(HangBelow(AddMenu(AddMenu(m_bus))).GetI2cParentDevice(), &m_bus);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchParent, IsTheSwitchAboveAChannelThatIsADevice) {
    CJournalSwitch& top = AddSwitch("top", 0, 0x71);
    EXPECT_EQ(HangBelow(AddDevice(top)).GetI2cParentDevice(), &top);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchParent, IsTheSwitchAboveAChannelDeviceAndMenusRoundIt) {
    CJournalSwitch& top = AddSwitch("top", 0, 0x71);
    EXPECT_EQ(HangBelow(AddMenu(AddDevice(*top.getChannelMenu(0)))).GetI2cParentDevice(), &top);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSwitchParent, IsMissingWithoutAnyDeviceAbove) {
    CJournalSwitch& mux = HangBelow(AddMenu(m_root));
    EXPECT_EQ(mux.GetI2cParentDevice(), nullptr);
    EXPECT_EQ(m_journal.Entries(), m_no_parent);
}

TEST_F(I2cSwitchParent, IsMissingOutsideAnyTree) {
    CJournalSwitch mux(m_journal, "mux", 1, 0x70);
    EXPECT_EQ(mux.GetI2cParentDevice(), nullptr);
    EXPECT_EQ(m_journal.Entries(), m_no_parent);
}

TEST_F(I2cSwitchParent, IsNoBusAboveAnotherDevice) {
    EXPECT_EQ(HangBelow(AddDevice(m_bus)).GetI2cParentDevice(), nullptr);
    EXPECT_EQ(m_journal.Entries(), m_wrong_parent);
}

TEST_F(I2cSwitchParent, IsNoDeviceOutsideABus) {
    EXPECT_EQ(HangBelow(AddDevice(m_root)).GetI2cParentDevice(), nullptr);
    EXPECT_EQ(m_journal.Entries(), m_wrong_parent);
}

TEST_F(I2cSwitchParent, IsNoSwitchTwoDevicesUp) {
    CJournalSwitch& top = AddSwitch("top", 0, 0x71);
    EXPECT_EQ(HangBelow(AddDevice(AddDevice(top))).GetI2cParentDevice(), nullptr);
    EXPECT_EQ(m_journal.Entries(), m_wrong_parent);
}

TEST_F(I2cSwitchParent, IsLookedForAgainEachTimeItIsMissed) {
    CJournalSwitch& mux = HangBelow(AddDevice(m_bus));
    CI2cXfrReq req;
    req.saddr = 0x50;
    m_bus.Answer({0x50});

    EXPECT_FALSE(mux.I2cTrans(req));
    EXPECT_FALSE(mux.I2cTrans(req));
    EXPECT_FALSE(mux.EnablePath(0));
    EXPECT_FALSE(mux.ClearPath());

    EXPECT_EQ(m_journal.Entries(),
              m_wrong_parent + m_wrong_parent + m_wrong_parent + m_wrong_parent);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwitchParent, FailsEveryOperationWhenThereIsNone) {
    CJournalSwitch mux(m_journal, "mux", 1, 0x70);
    CI2cXfrReq req;
    EXPECT_FALSE(mux.I2cTrans(req));
    EXPECT_FALSE(mux.EnablePath(0));
    EXPECT_FALSE(mux.ClearPath());
    EXPECT_EQ(m_journal.Entries(), m_no_parent + m_no_parent + m_no_parent);
    EXPECT_FALSE(mux.DirectI2cTrans(req));
}

TEST_F(I2cSwitchParent, IsMissedByTheCommandsOfTheSwitch) {
    CJournalSwitch& mux = HangBelow(AddDevice(m_bus));
    EXPECT_EQ(Send(NodeAt(mux, "trans"), MSG_CALL, std::string("rd"), uint8_t{0x50}).bytes,
              Bytes{FAIL});
    EXPECT_EQ(m_log.Texts(0x30),
              std::vector<std::string>{"(mux-1): Inproper parent object for switch channel!\n"});
}

TEST_F(I2cSwitchParent, IsKeptOnceItIsFound) {
    CJournalSwitch& mux = HangBelow(m_bus);
    CScriptedBus other("other");
    other.Answer({0x50});
    CI2cXfrReq req;
    req.saddr = 0x50;

    EXPECT_FALSE(mux.I2cTrans(req));
    EXPECT_EQ(mux.m_pDev, &m_bus);
    mux.m_pDev = &other;
    EXPECT_TRUE(mux.I2cTrans(req));
    EXPECT_TRUE(mux.EnablePath(0));
    EXPECT_TRUE(mux.ClearPath());
    EXPECT_EQ(mux.m_pDev, &other);
    EXPECT_EQ(other.Seen().size(), 1U);
}

TEST_F(I2cSwitchParent, IsFoundByEachOperationThatNeedsIt) {
    CJournalSwitch& mux = HangBelow(m_bus);
    CI2cXfrReq req;
    const std::vector<std::function<void()>> operations = {
        [&] { mux.I2cTrans(req); }, [&] { mux.DirectI2cTrans(req); },
        [&] { mux.EnablePath(0); }, [&] { mux.ClearPath(); },
        [&] { mux.probe(0); },
    };
    for (size_t i = 0; i < operations.size(); ++i) {
        mux.m_pDev = nullptr;
        operations[i]();
        EXPECT_EQ(mux.m_pDev, &m_bus) << "operation " << i;
    }
}

}  // namespace
