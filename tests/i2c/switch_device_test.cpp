// A new switch: what it is and which commands it brings.
#include "tests/i2c/switch_test.h"
#include "tests/support/declared_params.h"

namespace {

class I2cSwitchDevice : public CSwitchTest {
  protected:
    using CNames = std::vector<std::pair<std::string, std::string>>;

    static CNames CommandsOf(const CDiagObj& sw) {
        CNames commands;
        for (CDiagObj* child : sw.GetChildren()) {
            if (child->GetNodeType() == TFUNC) {
                EXPECT_NE(dynamic_cast<CDiagFunc*>(child), nullptr) << child->GetName();
                EXPECT_EQ(child->GetParent(), &sw) << child->GetName();
                commands.emplace_back(child->GetName(), child->GetDescription());
            }
        }
        return commands;
    }

    // The switch takes the commands of the bus but "set-sw-mode".
    const CNames m_commands = {
        {"chk-dev", "check an I2c device"},
        {"probe", "probe I2c devices"},
        {"trans", "transfer an I2c command"},
        {"show-channels", "show channels"},
        {"set-channel", "enable a channel"},
        {"clear-channel", "disable a channel"},
        {"set-channels", "enable a subset of channels"},
        {"clear-channels", "disable a subset of channels"},
        {"sel-channel", "select a channel"},
        {"disable-channels", "disable all channels"},
    };
};

TEST_F(I2cSwitchDevice, AppendsItsNumberToNameAndDescription) {
    const CJournalSwitch& sw = AddSwitch("mux", 12, 0x70);
    EXPECT_STREQ(sw.GetName(), "mux-12");
    EXPECT_STREQ(sw.GetDescription(), "test switch 12");
    EXPECT_EQ(sw.GetNodeType(), TDEVICE);
    EXPECT_EQ(sw.m_devId, 12U);
}

TEST_F(I2cSwitchDevice, AppendsItsNumberOnAChannelToo) {
    CJournalSwitch& top = AddSwitch("mux", 0, 0x70);
    const CJournalSwitch& sw = AddSwitch(top, 1, "mux", 7, 0x71);
    EXPECT_STREQ(sw.GetName(), "mux-7");
    EXPECT_STREQ(sw.GetDescription(), "test switch 7");
    EXPECT_EQ(sw.m_devId, 7U);
}

TEST_F(I2cSwitchDevice, WritesItsNumberInDecimalWithoutPadding) {
    EXPECT_STREQ(AddSwitch("mux", 0, 0x70).GetName(), "mux-0");
    EXPECT_STREQ(AddSwitch("mux", 4294967295U, 0x70).GetName(), "mux-4294967295");
    EXPECT_STREQ(AddSwitch("", 16, 0x70).GetName(), "-16");
}

TEST_F(I2cSwitchDevice, HasNoUpstreamChannelOnABus) {
    EXPECT_EQ(AddSwitch("mux", 1, 0x70).GetUpStreamChannel(), -1);
}

TEST_F(I2cSwitchDevice, KnowsTheChannelItSitsOn) {
    CJournalSwitch& top = AddSwitch("top", 1, 0x70, 4);
    for (const int8_t ch : {int8_t{0}, int8_t{3}}) {
        const CJournalSwitch& sw = AddSwitch(top, ch, "mux", 2, 0x71);
        EXPECT_EQ(sw.GetUpStreamChannel(), ch);
        EXPECT_EQ(sw.m_upstream_ch, ch);
    }
}

TEST_F(I2cSwitchDevice, StartsInPathMode1AndKnowsNoUpstreamDevice) {
    CJournalSwitch& top = AddSwitch("top", 1, 0x70);
    CJournalSwitch& mid = AddSwitch(top, 1, "mid", 2, 0x71);
    for (const CJournalSwitch* sw : {&top, &mid}) {
        EXPECT_FALSE(sw->m_is_master);
        EXPECT_FALSE(sw->m_sw_mode);
        EXPECT_EQ(sw->m_auto_path, 1);
        EXPECT_FALSE(sw->m_is_probing);
        EXPECT_EQ(sw->m_pDev, nullptr);
        EXPECT_TRUE(sw->m_upstream_device_addr.empty());
        EXPECT_EQ(sw->my_class_name, "");
    }
}

TEST_F(I2cSwitchDevice, SaysAndDoesNothingWhenItIsCreated) {
    CJournalSwitch& top = AddSwitch("top", 1, 0x70);
    AddSwitch(top, 0, "mid", 2, 0x71);
    EXPECT_TRUE(m_journal.Entries().empty());
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwitchDevice, HasTheBusCommandsButSetSwModeAndThenItsOwn) {
    CJournalSwitch& top = AddSwitch("top", 1, 0x70);
    EXPECT_EQ(CommandsOf(top), m_commands);
    EXPECT_EQ(CommandsOf(AddSwitch(top, 0, "mid", 2, 0x71)), m_commands);
    EXPECT_EQ(top.FindChild("set-sw-mode"), nullptr);
}

TEST_F(I2cSwitchDevice, LeavesSetSwModeToTheBusAboveIt) {
    AddSwitch("top", 1, 0x70);
    EXPECT_NE(m_bus.FindChild("set-sw-mode"), nullptr);
}

TEST_F(I2cSwitchDevice, DeclaresTheArgumentsOfItsCommands) {
    constexpr unsigned int UINT8 = 1;
    constexpr unsigned int UINT32 = 5;
    constexpr unsigned int REQUIRED = 0;
    const std::vector<CDeclaredParam> none;
    const std::vector<CDeclaredParam> channel = {{"ch", "channel number", UINT8, REQUIRED}};
    const std::vector<CDeclaredParam> port = {{"ch", "port number", UINT8, REQUIRED}};
    const std::vector<CDeclaredParam> mask = {{"mask", "mask", UINT32, REQUIRED}};
    const std::vector<std::pair<std::string, std::vector<CDeclaredParam>>> expected = {
        {"show-channels", none},    {"set-channel", channel}, {"clear-channel", channel},
        {"set-channels", mask},     {"clear-channels", mask}, {"sel-channel", port},
        {"disable-channels", none},
    };
    CJournalSwitch& sw = AddSwitch("mux", 1, 0x70);
    for (const auto& [name, params] : expected) {
        SCOPED_TRACE(name);
        EXPECT_EQ(DeclaredParamsOf(NodeAt(sw, name)), params);
    }
}

}  // namespace
