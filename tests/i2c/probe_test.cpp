#include "tests/i2c/bus_test.h"
#include "tests/support/fake_switch.h"

namespace {

using CAddresses = std::list<uint8_t>;

class I2cProbe : public CBusTest {
  protected:
    CFakeSwitch& AddSwitch(const std::string& name, uint8_t addr) {
        auto* sw = new CFakeSwitch(m_journal, name, addr);
        m_bus.AddChild(sw, CDiagObj::NO_SORT);
        return *sw;
    }

    CJournal m_journal;
};

TEST_F(I2cProbe, ReadsOneByteFromEveryAddressFrom1To125) {
    EXPECT_TRUE(m_bus.probe(0));

    ASSERT_EQ(m_bus.Seen().size(), 125U);
    for (size_t i = 0; i < 125; ++i) {
        EXPECT_EQ(m_bus.Seen()[i].saddr, i + 1);
        CI2cXfrReq rest = m_bus.Seen()[i];
        rest.saddr = 0;
        EXPECT_EQ(Describe(rest),
                  "saddr=0x0 esaddr=0 cmd_sel=0 baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=1 dir=1 "
                  "xfer=0 rpec_en=0 wpec_en=0 switch_ch=0 errmsg=''");
    }
    EXPECT_TRUE(m_log.Lines().empty());
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
}

TEST_F(I2cProbe, PrintsAndListsTheDevicesThatAnswer) {
    m_bus.Answer({0x7D, 0x50, 0x01, 0x00, 0x7E, 0x7F});

    EXPECT_TRUE(m_bus.probe(0));

    const CLines expected = {
        Print("         device with addr = 0x1 found \n"),
        Print("         device with addr = 0x50 found \n"),
        Print("         device with addr = 0x7d found \n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x01, 0x50, 0x7D}));
}

TEST_F(I2cProbe, PrintsADeviceBeforeTheNextAddressIsTried) {
    m_bus.Answer({0x50});
    size_t lines_before_next = 0;
    m_bus.OnTransfer([&](const CI2cXfrReq& req) {
        if (req.saddr == 0x51) {
            lines_before_next = m_log.Lines().size();
        }
    });
    EXPECT_TRUE(m_bus.probe(0));
    EXPECT_EQ(lines_before_next, 1U);
}

TEST_F(I2cProbe, PrintsAgainButDoesNotListTwiceWhatItFoundBefore) {
    m_bus.AddMyDeviceAddr(0x60);
    m_bus.Answer({0x50, 0x60});

    EXPECT_TRUE(m_bus.probe(0));

    const CLines expected = {
        Print("         device with addr = 0x50 found \n"),
        Print("         device with addr = 0x60 found \n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x60, 0x50}));
}

TEST_F(I2cProbe, TakesNoNoticeOfTheLevel) {
    m_bus.Answer({0x50});
    EXPECT_TRUE(m_bus.probe(0));
    const CLines at_level_0 = m_log.Lines();
    m_log.Clear();
    EXPECT_TRUE(m_bus.probe(7));
    EXPECT_EQ(m_log.Lines(), at_level_0);
    EXPECT_EQ(m_bus.Seen().size(), 250U);
}

TEST_F(I2cProbe, GoesOnWithTheSwitchesAtLevel1) {
    const std::string first = AddSwitch("mux-b", 0x71).GetName();
    const std::string second = AddSwitch("mux-a", 0x09).GetName();
    m_bus.Answer({0x71});
    m_bus.OnTransfer([this](const CI2cXfrReq& req) {
        if (req.saddr == 125) {
            m_journal.Note("read 125");
        }
    });

    EXPECT_TRUE(m_bus.probe(3));

    const std::vector<CJournal::Entry> expected = {
        Print("         device with addr = 0x71 found \n"),
        {CJournal::CALL, "read 125"},
        Print("i2c-0: probe devices from switch " + first + " (addr=0x71) \n"),
        {CJournal::CALL, first + ": probe(1)"},
        Print("i2c-0: probe devices from switch " + second + " (addr=0x9) \n"),
        {CJournal::CALL, second + ": probe(1)"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cProbe, SucceedsEvenWhenTheProbesOfItsSwitchesFail) {
    CFakeSwitch& first = AddSwitch("mux-b", 0x71);
    CFakeSwitch& second = AddSwitch("mux-a", 0x70);
    first.Fail();
    second.Fail();

    EXPECT_TRUE(m_bus.probe(0));

    EXPECT_EQ(m_journal.Calls(),
              (std::vector<std::string>{std::string(first.GetName()) + ": probe(1)",
                                        std::string(second.GetName()) + ": probe(1)"}));
}

TEST_F(I2cProbe, SeesOnlySwitchesDirectlyBelowTheBus) {
    auto* menu = new CDiagMenu(TMENU, "shelf", "not a device");
    m_bus.AddChild(menu, CDiagObj::NO_SORT);
    menu->AddChild(new CFakeSwitch(m_journal, "far", 0x70), CDiagObj::NO_SORT);
    m_bus.AddChild(new CDiagDevice("slave", "no switch", TDEVICE), CDiagObj::NO_SORT);

    EXPECT_TRUE(m_bus.probe(0));

    EXPECT_TRUE(m_journal.Entries().empty());
}

class I2cProbeCommand : public I2cProbe {
  protected:
    CAnswer Probe() { return Send(Command("probe"), MSG_CALL); }
};

TEST_F(I2cProbeCommand, ClearsTheListsThenClosesTheSwitchesThenProbes) {
    CFakeSwitch& sw = AddSwitch("mux", 0x70);
    const std::string mux = sw.GetName();
    m_bus.AddMyDeviceAddr(0x33);
    m_bus.Answer({0x20, 0x70, 0x74});

    const CAnswer reply = Probe();

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    const std::vector<CJournal::Entry> expected = {
        {CJournal::CALL, mux + ": ClearAllDeviceAddrList()"},
        Print("(i2c-0:DisableAllSwitches): turn off all downstream channels for immediate switch " +
              mux + " \n"),
        {CJournal::CALL, mux + ": DisableChannels()"},
        Print("i2c-0: possible switch device with addr = 0x74\n"),
        Print("WARNING (i2c-0) : TAV don't know how to operate this Device! Please make sure that "
              "the downstream channels are turned off!\n"),
        Print("devices connected: "),
        Print("0x70 "),
        Print("\n"),
        Print("(i2c-0:DisableAllSwitches): turn off downstream switches for switch " + mux + "\n"),
        {CJournal::CALL, mux + ": DisableAllSwitches()"},
        Print("         device with addr = 0x20 found \n"),
        Print("         device with addr = 0x70 found \n"),
        Print("         device with addr = 0x74 found \n"),
        Print("i2c-0: probe devices from switch " + mux + " (addr=0x70) \n"),
        {CJournal::CALL, mux + ": probe(1)"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x70, 0x20, 0x74}));
    EXPECT_EQ(m_bus.Seen().size(), 250U);
}

TEST_F(I2cProbeCommand, FindsNothingOnAnEmptyBus) {
    EXPECT_EQ(Probe().bytes, Bytes{SUCCESS});
    EXPECT_TRUE(m_log.Lines().empty());
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    EXPECT_EQ(m_bus.Seen().size(), 250U);
}

TEST_F(I2cProbeCommand, ForgetsADeviceThatIsGone) {
    m_bus.Answer({0x20, 0x50});
    Probe();
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (CAddresses{0x20, 0x50}));
    m_bus.Answer({0x50});
    Probe();
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), CAddresses{0x50});
}

TEST_F(I2cProbeCommand, KeepsWhatItFoundUntilTheNextProbe) {
    m_bus.Answer({0x20});
    Probe();
    Send(Command("chk-dev"), MSG_CALL, uint8_t{0x20});
    Send(Command("trans"), MSG_CALL, std::string("rd"), uint8_t{0x20});
    Send(Command("set-sw-mode"), MSG_CALL, uint8_t{1});
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), CAddresses{0x20});
}

TEST_F(I2cProbeCommand, WarnsOfAnUnknownSwitchAtEveryProbe) {
    m_bus.Answer({0x71});
    for (int round = 0; round < 2; ++round) {
        m_log.Clear();
        EXPECT_EQ(Probe().bytes, Bytes{SUCCESS});
        ASSERT_EQ(m_log.Lines().size(), 5U);
        EXPECT_EQ(m_log.Lines()[0], Print("i2c-0: possible switch device with addr = 0x71\n"));
        EXPECT_EQ(m_log.Lines()[4], Print("         device with addr = 0x71 found \n"));
    }
}

TEST_F(I2cProbeCommand, IgnoresInput) {
    EXPECT_EQ(Send(Command("probe"), MSG_CALL, CNumbers{{1, 2, 3}}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_bus.Seen().size(), 250U);
    EXPECT_TRUE(m_log.Lines().empty());
}

// A bus whose clean-up and probe go as the test says.
class CMoodyBus : public CScriptedBus {
  public:
    CMoodyBus(bool disables, bool probes) : m_disables(disables), m_probes(probes) {}

    bool DisableAllSwitches() override {
        calls.push_back("DisableAllSwitches with " + std::to_string(GetMyDeviceAddrList().size()));
        return m_disables;
    }
    bool probe(int level) override {
        calls.push_back("probe " + std::to_string(level));
        return m_probes;
    }
    std::vector<std::string> calls;

  private:
    const bool m_disables;
    const bool m_probes;
};

TEST_F(I2cProbeCommand, DoesNotProbeWhenTheSwitchesCannotBeClosed) {
    CMoodyBus bus(false, true);
    bus.AddMyDeviceAddr(0x50);

    const CAnswer reply = Send(NodeAt(bus, "probe"), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_EQ(bus.calls, std::vector<std::string>{"DisableAllSwitches with 0"});
    EXPECT_EQ(m_log.Lines(), CLines{Print("   disabling switches error!\n")});
}

TEST_F(I2cProbeCommand, ReportsAFailedProbe) {
    CMoodyBus bus(true, false);

    const CAnswer reply = Send(NodeAt(bus, "probe"), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    EXPECT_EQ(bus.calls, (std::vector<std::string>{"DisableAllSwitches with 0", "probe 0"}));
    EXPECT_EQ(m_log.Lines(), CLines{Print("   probe devices error!\n")});
}

TEST_F(I2cProbeCommand, ProbesTheBusAtLevel0) {
    CMoodyBus bus(true, true);

    const CAnswer reply = Send(NodeAt(bus, "probe"), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    EXPECT_EQ(bus.calls, (std::vector<std::string>{"DisableAllSwitches with 0", "probe 0"}));
    EXPECT_TRUE(m_log.Lines().empty());
}

}  // namespace
