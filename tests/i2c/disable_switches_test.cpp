// Making a bus clean before it is probed.
#include "tests/i2c/bus_test.h"
#include "tests/support/fake_switch.h"

namespace {

class I2cDisableAllSwitches : public CBusTest {
  protected:
    CFakeSwitch& AddSwitch(const std::string& name, uint8_t addr) {
        auto* sw = new CFakeSwitch(m_journal, name, addr);
        m_bus.AddChild(sw, CDiagObj::NO_SORT);
        return *sw;
    }

    CJournal m_journal;
};

TEST_F(I2cDisableAllSwitches, ReadsOneByteFromEveryAddressFrom1To125) {
    EXPECT_TRUE(m_bus.DisableAllSwitches());

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
}

TEST_F(I2cDisableAllSwitches, WarnsOfUnknownDevicesInTheMultiplexerRangeOnly) {
    m_bus.Answer({0x01, 0x50, 0x6F, 0x70, 0x77, 0x78, 0x7D});

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    const std::string warning =
        "WARNING (i2c-0) : TAV don't know how to operate this Device! Please make sure that the "
        "downstream channels are turned off!\n";
    const CLines expected = {
        Print("i2c-0: possible switch device with addr = 0x70\n"),
        Print(warning),
        Print("devices connected: "),
        Print("\n"),
        Print("i2c-0: possible switch device with addr = 0x77\n"),
        Print(warning),
        Print("devices connected: "),
        Print("\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cDisableAllSwitches, WarnsOfEveryAddressOfTheMultiplexerRange) {
    m_bus.Answer({0x70, 0x71, 0x72, 0x73, 0x74, 0x75, 0x76, 0x77});

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    std::vector<std::string> warned;
    for (const std::string& text : m_log.Texts(0xB0)) {
        if (text.find("possible switch") != std::string::npos) {
            warned.push_back(text);
        }
    }
    const std::vector<std::string> expected = {
        "i2c-0: possible switch device with addr = 0x70\n",
        "i2c-0: possible switch device with addr = 0x71\n",
        "i2c-0: possible switch device with addr = 0x72\n",
        "i2c-0: possible switch device with addr = 0x73\n",
        "i2c-0: possible switch device with addr = 0x74\n",
        "i2c-0: possible switch device with addr = 0x75\n",
        "i2c-0: possible switch device with addr = 0x76\n",
        "i2c-0: possible switch device with addr = 0x77\n",
    };
    EXPECT_EQ(warned, expected);
}

TEST_F(I2cDisableAllSwitches, OnlyReportsUnknownDevicesAndNeverListsOrWritesThem) {
    m_bus.Answer({0x20, 0x70});

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
    EXPECT_EQ(m_bus.Seen().size(), 125U);
    for (const CI2cXfrReq& req : m_bus.Seen()) {
        EXPECT_EQ(req.dir, 1);
    }
}

TEST_F(I2cDisableAllSwitches, ShowsTheKnownAddressesWithAWarning) {
    m_bus.AddMyDeviceAddr(0x05);
    m_bus.AddMyDeviceAddr(0x50);
    m_bus.Answer({0x74});

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    const CLines expected = {
        Print("i2c-0: possible switch device with addr = 0x74\n"),
        Print("WARNING (i2c-0) : TAV don't know how to operate this Device! Please make sure that "
              "the downstream channels are turned off!\n"),
        Print("devices connected: "),
        Print("0x 5 "),
        Print("0x50 "),
        Print("\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cDisableAllSwitches, DoesNotWarnOfAListedAddress) {
    m_bus.AddMyDeviceAddr(0x71);
    m_bus.Answer({0x71});

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    EXPECT_TRUE(m_log.Lines().empty());
}

TEST_F(I2cDisableAllSwitches, ClosesAllSwitchesFirstThenLooksForOthersThenGoesBelow) {
    const std::string first = AddSwitch("mux-b", 0x71).GetName();
    const std::string second = AddSwitch("mux-a", 0x70).GetName();
    m_bus.Answer({0x70, 0x71, 0x72});
    m_bus.OnTransfer([this](const CI2cXfrReq& req) {
        if (req.saddr == 1 || req.saddr == 125) {
            m_journal.Note("read " + std::to_string(req.saddr));
        }
    });

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    const std::vector<CJournal::Entry> expected = {
        Print("(i2c-0:DisableAllSwitches): turn off all downstream channels for immediate switch " +
              first + " \n"),
        {CJournal::CALL, first + ": DisableChannels()"},
        Print("(i2c-0:DisableAllSwitches): turn off all downstream channels for immediate switch " +
              second + " \n"),
        {CJournal::CALL, second + ": DisableChannels()"},
        {CJournal::CALL, "read 1"},
        Print("i2c-0: possible switch device with addr = 0x72\n"),
        Print("WARNING (i2c-0) : TAV don't know how to operate this Device! Please make sure that "
              "the downstream channels are turned off!\n"),
        Print("devices connected: "),
        Print("0x71 "),
        Print("0x70 "),
        Print("\n"),
        {CJournal::CALL, "read 125"},
        Print("(i2c-0:DisableAllSwitches): turn off downstream switches for switch " + first +
              "\n"),
        {CJournal::CALL, first + ": DisableAllSwitches()"},
        Print("(i2c-0:DisableAllSwitches): turn off downstream switches for switch " + second +
              "\n"),
        {CJournal::CALL, second + ": DisableAllSwitches()"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cDisableAllSwitches, ListsEachSwitchAfterClosingIt) {
    CFakeSwitch& first = AddSwitch("mux-b", 0x71);
    CFakeSwitch& second = AddSwitch("mux-a", 0x70);
    std::vector<std::list<uint8_t>> lists;
    const auto look = [&] { lists.push_back(m_bus.GetMyDeviceAddrList()); };
    first.OnCall(look);
    second.OnCall(look);

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    // Once for DisableChannels and once for DisableAllSwitches of each.
    const std::vector<std::list<uint8_t>> expected = {{}, {0x71}, {0x71, 0x70}, {0x71, 0x70}};
    EXPECT_EQ(lists, expected);
}

TEST_F(I2cDisableAllSwitches, ListsASwitchThatDoesNotAnswer) {
    AddSwitch("mux", 0x70);
    EXPECT_TRUE(m_bus.DisableAllSwitches());
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), std::list<uint8_t>{0x70});
}

TEST_F(I2cDisableAllSwitches, GoesOnWhenASwitchFails) {
    CFakeSwitch& first = AddSwitch("mux-b", 0x71);
    CFakeSwitch& second = AddSwitch("mux-a", 0x70);
    first.Fail();
    second.Fail();

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    const std::vector<std::string> expected = {
        std::string(first.GetName()) + ": DisableChannels()",
        std::string(second.GetName()) + ": DisableChannels()",
        std::string(first.GetName()) + ": DisableAllSwitches()",
        std::string(second.GetName()) + ": DisableAllSwitches()",
    };
    EXPECT_EQ(m_journal.Calls(), expected);
    EXPECT_EQ(m_bus.GetMyDeviceAddrList(), (std::list<uint8_t>{0x71, 0x70}));
}

TEST_F(I2cDisableAllSwitches, SeesOnlySwitchesDirectlyBelowTheBus) {
    auto* menu = new CDiagMenu(TMENU, "shelf", "not a device");
    m_bus.AddChild(menu, CDiagObj::NO_SORT);
    menu->AddChild(new CFakeSwitch(m_journal, "far", 0x70), CDiagObj::NO_SORT);
    m_bus.AddChild(new CDiagDevice("slave", "no switch", TDEVICE), CDiagObj::NO_SORT);
    m_bus.AddChild(new CScriptedBus("lower-bus"), CDiagObj::NO_SORT);

    EXPECT_TRUE(m_bus.DisableAllSwitches());

    EXPECT_TRUE(m_journal.Entries().empty());
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
}

}  // namespace
