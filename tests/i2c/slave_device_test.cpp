// A slave in the tree: what it is, and its path.
#include "tests/i2c/slave_test.h"

namespace {

class I2cSlaveDevice : public CSlaveTest {
  protected:
    const CEntries m_enabling = {Trace("(chip): enable upstream switch mux-2 channel = 1\n")};
    const CEntries m_clearing = {Trace("(chip): clear upstream switch mux-2 channel = 1\n")};
};

TEST_F(I2cSlaveDevice, IsADeviceWithItsOwnNameAndDescription) {
    EXPECT_STREQ(m_chip.GetName(), "chip");
    EXPECT_STREQ(m_chip.GetDescription(), "a slave");
    EXPECT_EQ(m_chip.GetNodeType(), TDEVICE);
}

TEST_F(I2cSlaveDevice, StartsWithItsBusAndWithoutAddressAndChannel) {
    const CTestSlave on_bus(&m_bus);
    EXPECT_EQ(on_bus.m_i2cDev, &m_bus);
    EXPECT_EQ(on_bus.m_i2c_addr, 0xFF);
    EXPECT_EQ(on_bus.m_i2c_ch, -1);
    const CTestSlave below_switch(&m_mux);
    EXPECT_EQ(below_switch.m_i2cDev, &m_mux);
    EXPECT_EQ(below_switch.m_i2c_addr, 0xFF);
    EXPECT_EQ(below_switch.m_i2c_ch, -1);
}

TEST_F(I2cSlaveDevice, SaysAndTransfersNothingWhenItIsCreated) {
    const CTestSlave another(&m_mux);
    EXPECT_TRUE(m_journal.Entries().empty());
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSlaveDevice, HasNoPathCommandsOnARootBus) {
    EXPECT_TRUE(m_on_bus.GetChildren().empty());
}

TEST_F(I2cSlaveDevice, HasTwoPathCommandsBelowASwitch) {
    std::vector<std::pair<std::string, std::string>> commands;
    for (CDiagObj* child : m_chip.GetChildren()) {
        EXPECT_EQ(child->GetNodeType(), TFUNC);
        EXPECT_EQ(child->GetParent(), &m_chip);
        EXPECT_TRUE(child->GetChildren().empty()) << child->GetName() << " has parameters";
        commands.emplace_back(child->GetName(), child->GetDescription());
    }
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"enable-path", "enable I2c switch path for the device"},
        {"clr-path", "clear I2c switch path for the device"},
    };
    EXPECT_EQ(commands, expected);
    EXPECT_NE(dynamic_cast<CEnablePathCmd*>(m_chip.FindChild("enable-path")), nullptr);
    EXPECT_NE(dynamic_cast<CClearPathCmd*>(m_chip.FindChild("clr-path")), nullptr);
}

TEST_F(I2cSlaveDevice, HasPathCommandsBelowAnyBusThatIsNoMaster) {
    CScriptedBus bus;
    bus.m_is_master = false;
    const CTestSlave slave(&bus);
    EXPECT_EQ(slave.GetChildren().size(), 2U);
}

TEST_F(I2cSlaveDevice, OpensItsPathFromTheTopDown) {
    EXPECT_TRUE(m_chip.EnablePath());
    EXPECT_EQ(m_journal.Entries(), m_enabling + m_opened);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSlaveDevice, ClosesItsPathFromTheBottomUp) {
    EXPECT_TRUE(m_chip.ClearPath());
    EXPECT_EQ(m_journal.Entries(), m_clearing + m_closed);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSlaveDevice, OpensThePathOfItsOwnChannel) {
    m_chip.m_i2c_ch = 0;
    EXPECT_TRUE(m_chip.EnablePath());
    ASSERT_FALSE(m_journal.Entries().empty());
    EXPECT_EQ(m_journal.Entries().front(),
              Trace("(chip): enable upstream switch mux-2 channel = 0\n"));
    EXPECT_EQ(m_journal.Entries().back(), Call("mux-2: SelChannel(0)"));
    m_journal.Clear();
    EXPECT_TRUE(m_chip.ClearPath());
    EXPECT_EQ(m_journal.Entries().front(),
              Trace("(chip): clear upstream switch mux-2 channel = 0\n"));
}

TEST_F(I2cSlaveDevice, NeedsNoPathWithoutAChannel) {
    m_chip.m_i2c_ch = -1;
    EXPECT_TRUE(m_chip.EnablePath());
    EXPECT_TRUE(m_chip.ClearPath());
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveDevice, DoesNotLookAtItsBusWithoutAChannel) {
    m_chip.m_i2c_ch = -1;
    m_chip.m_i2cDev = nullptr;
    EXPECT_TRUE(m_chip.EnablePath());
    EXPECT_TRUE(m_chip.ClearPath());
}

TEST_F(I2cSlaveDevice, NeedsNoPathOnARootBus) {
    m_on_bus.m_i2c_ch = 1;
    EXPECT_TRUE(m_on_bus.EnablePath());
    EXPECT_TRUE(m_on_bus.ClearPath());
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveDevice, ReportsAPathThatCannotBeOpened) {
    m_mux.FailAt("SelChannel");
    EXPECT_FALSE(m_chip.EnablePath());
    m_top.FailAt("SelChannel");
    EXPECT_FALSE(m_chip.EnablePath());
}

TEST_F(I2cSlaveDevice, ReportsAPathThatCannotBeClosed) {
    m_top.FailAt("DisableChannels");
    EXPECT_FALSE(m_chip.ClearPath());
    m_mux.FailAt("DisableChannels");
    EXPECT_FALSE(m_chip.ClearPath());
}

TEST_F(I2cSlaveDevice, FollowsTheModeOfItsSwitch) {
    const CEntries not_opened = {Trace("(mux-2): I2C path configuraiton skipped!\n")};
    const CEntries not_closed = {Trace("(mux-2): I2C path clear skipped!\n")};
    for (const uint8_t mode : Bytes{0, 1, 2, 3}) {
        SCOPED_TRACE(unsigned{mode});
        m_mux.SetPathConfigMode(mode);
        m_journal.Clear();
        EXPECT_TRUE(m_chip.EnablePath());
        EXPECT_EQ(m_journal.Entries(),
                  m_enabling + (mode == 1 || mode == 2 ? m_opened : not_opened));
        m_journal.Clear();
        EXPECT_TRUE(m_chip.ClearPath());
        EXPECT_EQ(m_journal.Entries(), m_clearing + (mode == 1 ? m_closed : not_closed));
    }
}

TEST_F(I2cSlaveDevice, TakesNoLockForItsPath) {
    const CGuard<CMutex> bus(m_bus.m_lock);
    const CGuard<CMutex> top(m_top.m_lock);
    const CGuard<CMutex> mux(m_mux.m_lock);
    EXPECT_TRUE(m_chip.EnablePath());
    EXPECT_TRUE(m_chip.ClearPath());
}

}  // namespace
