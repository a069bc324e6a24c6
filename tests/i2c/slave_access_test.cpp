// Access to the registers of a slave that is no node of the tree.
#include <stdexcept>

#include "i2c/DiagI2cSlaveAccess.h"
#include "tests/i2c/slave_test.h"

namespace {

class CTestAccess : public CDiagI2cSlaveAccess {
  public:
    using CDiagI2cSlaveAccess::CDiagI2cSlaveAccess;

    using CDiagI2cSlaveAccess::m_i2c_addr;
    using CDiagI2cSlaveAccess::m_i2c_ch;
    using CDiagI2cSlaveAccess::m_i2cDev;
    using CDiagI2cSlaveAccess::m_papa;
};

// Who sent each log line.
class CSenders : public ILogSink {
  public:
    CSenders() : m_scope(*this) {}
    void Write(const CLogRecord& record) override { m_nodes.push_back(record.node); }
    const std::vector<const CDiagMenu*>& Nodes() const { return m_nodes; }

  private:
    std::vector<const CDiagMenu*> m_nodes;
    CLogSinkScope m_scope;
};

// Whether this thread holds the lock: it refuses to be taken twice.
bool Holds(CMutex& lock) {
    try {
        const CGuard<CMutex> guard(lock);
        return false;
    } catch (const CDiagException&) {
        return true;
    }
}

class I2cSlaveAccess : public CSlaveTest {
  protected:
    I2cSlaveAccess() {
        m_root.AddChild(&m_papa, CDiagObj::NO_SORT);
        m_on_root.Configure(-1, 0x51);
        m_access.Configure(1, 0x50);
    }

    CDiagMenu& m_papa = *new CDiagMenu(TMENU, "papa", "uses a slave");
    CTestAccess m_on_root{&m_papa, &m_bus};
    CTestAccess m_access{&m_papa, &m_mux};
};

// Construction and configuration

TEST_F(I2cSlaveAccess, StartsWithoutAddressAndChannel) {
    const CTestAccess access(&m_papa, &m_mux);
    EXPECT_EQ(access.m_papa, &m_papa);
    EXPECT_EQ(access.m_i2cDev, &m_mux);
    EXPECT_EQ(access.m_i2c_ch, -1);
    EXPECT_EQ(access.m_i2c_addr, 0xFF);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, IsConfiguredWithChannelAndAddress) {
    m_access.Configure(3, 0x2A);
    EXPECT_EQ(m_access.m_i2c_ch, 3);
    EXPECT_EQ(m_access.m_i2c_addr, 0x2A);
    m_access.Configure(-1, 0x7F);
    EXPECT_EQ(m_access.m_i2c_ch, -1);
    EXPECT_EQ(m_access.m_i2c_addr, 0x7F);
    EXPECT_TRUE(m_journal.Entries().empty());
}

// The path

TEST_F(I2cSlaveAccess, OpensAndClosesItsPathInTheNameOfItsPapa) {
    const CSenders senders;
    EXPECT_TRUE(m_access.EnablePath());
    const CEntries enabling = {Trace("Slave Access: enable upstream switch mux-2 channel = 1\n")};
    EXPECT_EQ(m_journal.Entries(), enabling + m_opened);
    EXPECT_EQ(senders.Nodes().at(0), &m_papa);

    const size_t lines = senders.Nodes().size();
    m_journal.Clear();
    EXPECT_TRUE(m_access.ClearPath());
    const CEntries clearing = {Trace("Slave Access: clear upstream switch mux-2 channel = 1\n")};
    EXPECT_EQ(m_journal.Entries(), clearing + m_closed);
    EXPECT_EQ(senders.Nodes().at(lines), &m_papa);
}

TEST_F(I2cSlaveAccess, NeedsNoPathWithoutAChannelOrOnARootBus) {
    m_access.Configure(-1, 0x50);
    EXPECT_TRUE(m_access.EnablePath());
    EXPECT_TRUE(m_access.ClearPath());
    m_on_root.Configure(1, 0x50);
    EXPECT_TRUE(m_on_root.EnablePath());
    EXPECT_TRUE(m_on_root.ClearPath());
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, DoesNotLookAtItsBusWithoutAChannel) {
    m_access.Configure(-1, 0x50);
    m_access.m_i2cDev = nullptr;
    EXPECT_TRUE(m_access.EnablePath());
    EXPECT_TRUE(m_access.ClearPath());
}

TEST_F(I2cSlaveAccess, ReportsAPathThatFails) {
    m_mux.Fail();
    EXPECT_FALSE(m_access.EnablePath());
    EXPECT_FALSE(m_access.ClearPath());
    // The switch reports why it could not close; nothing is added to that.
    EXPECT_EQ(m_log.Texts(0x20).size(), 1U);
    EXPECT_TRUE(m_log.Texts(0x10).empty());
    EXPECT_TRUE(m_log.Texts(0xB0).empty());
}

TEST_F(I2cSlaveAccess, FollowsTheModeOfTheSwitch) {
    m_mux.SetPathConfigMode(2);
    m_journal.Clear();
    EXPECT_TRUE(m_access.ClearPath());
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Trace("Slave Access: clear upstream switch mux-2 channel = 1\n"),
                        Trace("(mux-2): I2C path clear skipped!\n")}));
}

// Transfers

TEST_F(I2cSlaveAccess, ReadsARegister) {
    m_bus.Expect(
        {.saddr = 0x50, .read = true, .cmd_sel = 1, .cmd = 5, .data = {0xA7}, .switch_ch = 1});
    uint8_t data = 0;
    EXPECT_TRUE(m_access.ReadReg(5, &data));
    EXPECT_EQ(data, 0xA7);
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, WritesARegister) {
    m_bus.Expect({.saddr = 0x51, .cmd_sel = 1, .cmd = 0xFE, .data = {0x3C}});
    EXPECT_TRUE(m_on_root.WriteReg(0xFE, 0x3C));
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, FillsARecordThatIsZeroOtherwise) {
    uint8_t data = 0x11;
    m_bus.Answer({0x50, 0x51});
    EXPECT_TRUE(m_access.I2cXfer(0xAB, false, &data));
    EXPECT_TRUE(m_on_root.I2cXfer(0x00, true, &data));
    ASSERT_EQ(m_bus.Seen().size(), 2U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x50 esaddr=0 cmd_sel=1 baddr_sel=0 cmd=0xab baddr=0 data=set tsize=1 dir=1 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=1 errmsg=''");
    EXPECT_EQ(Describe(m_bus.Seen()[1]),
              "saddr=0x51 esaddr=0 cmd_sel=1 baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=1 dir=0 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=-1 errmsg=''");
    EXPECT_EQ(m_bus.Seen()[0].data, &data);
    EXPECT_EQ(m_bus.Seen()[1].data, &data);
}

TEST_F(I2cSlaveAccess, TransfersToNoAddressBeforeItIsConfigured) {
    CTestAccess access(&m_papa, &m_bus);
    uint8_t data = 0;
    EXPECT_FALSE(access.ReadReg(0, &data));
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(m_bus.Seen()[0].saddr, 0xFF);
    EXPECT_EQ(m_bus.Seen()[0].switch_ch, -1);
}

TEST_F(I2cSlaveAccess, NeitherOpensNorClosesThePathForATransfer) {
    m_bus.Answer({0x50});
    uint8_t data = 0;
    EXPECT_TRUE(m_access.ReadReg(1, &data));
    EXPECT_TRUE(m_access.WriteReg(1, 2));
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, LetsTheSwitchActOnItsChannel) {
    m_mux.SetPathConfigMode(3);
    m_bus.Answer({0x50});
    m_journal.Clear();
    EXPECT_TRUE(m_access.WriteReg(1, 2));
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Info("Setting up I2C path for deivce. end channel=1\n"),
                        Trace("(mux-2): I2C path configuraiton skipped!\n")}));
}

TEST_F(I2cSlaveAccess, ReportsAFailedReadWithTheTextOfTheBus) {
    const CSenders senders;
    m_bus.Expect({.saddr = 0x51,
                  .read = true,
                  .cmd_sel = 1,
                  .cmd = 0xAB,
                  .data = {0},
                  .ok = false,
                  .errmsg = "no acknowledge"});
    uint8_t data = 0;
    EXPECT_FALSE(m_on_root.ReadReg(0xAB, &data));
    EXPECT_EQ(m_journal.Entries(), (CEntries{{0x10, "Failed to read reg.0xab: no acknowledge"}}));
    EXPECT_EQ(senders.Nodes(), std::vector<const CDiagMenu*>{&m_papa});
}

TEST_F(I2cSlaveAccess, ReportsAFailedWriteAsAFailedRead) {
    m_bus.Expect({.saddr = 0x51,
                  .cmd_sel = 1,
                  .cmd = 5,
                  .data = {1},
                  .ok = false,
                  .errmsg = "arbitration lost"});
    EXPECT_FALSE(m_on_root.WriteReg(5, 1));
    EXPECT_EQ(m_journal.Entries(), (CEntries{{0x10, "Failed to read reg.0x05: arbitration lost"}}));
}

TEST_F(I2cSlaveAccess, ReportsAFailureWithoutText) {
    EXPECT_FALSE(m_access.WriteReg(0, 1));
    EXPECT_EQ(m_journal.Entries(), (CEntries{{0x10, "Failed to read reg.0x00: "}}));
}

// The lock

TEST_F(I2cSlaveAccess, HoldsTheLockOfItsBusForOneTransfer) {
    std::vector<bool> held;
    m_bus.OnTransfer([&](const CI2cXfrReq&) {
        held.push_back(Holds(m_bus.m_lock));
        held.push_back(Holds(m_mux.m_lock));
        held.push_back(Holds(m_top.m_lock));
    });
    uint8_t data = 0;
    m_on_root.ReadReg(0, &data);
    EXPECT_EQ(held, (std::vector<bool>{true, false, false}));
    held.clear();
    m_on_root.WriteReg(0, data);
    EXPECT_EQ(held, (std::vector<bool>{true, false, false}));
    EXPECT_FALSE(Holds(m_bus.m_lock));
}

TEST_F(I2cSlaveAccess, HoldsTheLockOfItsSwitchBehindASwitch) {
    std::vector<bool> held;
    m_bus.OnTransfer([&](const CI2cXfrReq&) {
        held.push_back(Holds(m_bus.m_lock));
        held.push_back(Holds(m_mux.m_lock));
        held.push_back(Holds(m_top.m_lock));
    });
    m_access.WriteReg(0, 1);
    EXPECT_EQ(held, (std::vector<bool>{false, true, false}));
    EXPECT_FALSE(Holds(m_mux.m_lock));
}

TEST_F(I2cSlaveAccess, GivesTheLockBackWhenTheTransferThrows) {
    uint8_t data = 0;
    m_bus.OnTransfer([](const CI2cXfrReq&) { throw CDiagException("bus %d is stuck", 7); });
    EXPECT_EQ(ThrownText([&] { m_access.ReadReg(0, &data); }), "bus 7 is stuck");
    EXPECT_FALSE(Holds(m_mux.m_lock));

    m_bus.OnTransfer([](const CI2cXfrReq&) { throw std::runtime_error("not of the contract"); });
    EXPECT_THROW(m_on_root.WriteReg(0, 1), std::runtime_error);
    EXPECT_FALSE(Holds(m_bus.m_lock));
    EXPECT_TRUE(m_journal.Entries().empty());
}

TEST_F(I2cSlaveAccess, FailsTheAssertionWhenItAlreadyHoldsTheLock) {
    const CGuard<CMutex> guard(m_bus.m_lock);
    const std::string text = ThrownText([&] { m_on_root.WriteReg(0, 1); });
    EXPECT_THAT(text, testing::HasSubstr("Assert failed (!::pthread_mutex_lock(&m_lock))"));
    EXPECT_TRUE(m_bus.Seen().empty());
}

}  // namespace
