// The path modes of a switch and of the switches below it.
#include "tests/i2c/switch_test.h"

namespace {

// What is known of a path mode.
struct CMode {
    uint8_t mode;
    bool sw_mode;
    uint8_t auto_path;
    CEntries told;      // when it is set
    std::string shown;  // when it is asked for
};
void PrintTo(const CMode& mode, std::ostream* out) {
    *out << unsigned{mode.mode};
}

const std::vector<CMode> MODES = {
    {0,
     false,
     0,
     {Trace("no path configuration automatically.\n")},
     "0: no path configuration automatically.\n"},
    {1,
     false,
     1,
     {Trace("Set and clear path per I2c commands.\n")},
     "1: Set and clear path per command.\n"},
    {2,
     false,
     2,
     {Trace("Set path per I2c commands. will not clear the path.\n")},
     "2: Set path per command. will not clear the path.\n"},
    {3,
     true,
     0,
     {Trace("Set path per every I2c transation.\n")},
     "3: Set path per every I2c transation.\n"},
    {4, false, 4, {}, "ERROR: invalid mode.\n"},
    {7, false, 7, {}, "ERROR: invalid mode.\n"},
    {255, false, 255, {}, "ERROR: invalid mode.\n"},
};

class EveryI2cPathMode : public CSwitchTest, public testing::WithParamInterface<CMode> {
  protected:
    EveryI2cPathMode() : m_mux(AddSwitch("mux", 1, 0x0A)) {}

    CJournalSwitch& m_mux;
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cPathMode, testing::ValuesIn(MODES),
                         testing::PrintToStringParamName());

TEST_P(EveryI2cPathMode, IsStoredAndToldWhenItIsSet) {
    m_mux.SetPathConfigMode(GetParam().mode);
    EXPECT_EQ(m_mux.m_sw_mode, GetParam().sw_mode);
    EXPECT_EQ(m_mux.m_auto_path, GetParam().auto_path);
    EXPECT_EQ(m_journal.Entries(),
              CEntries{Trace("mux-1(0xa): SetPathConfigMode\n")} + GetParam().told);
}

TEST_P(EveryI2cPathMode, ReplacesEveryOtherMode) {
    for (const CMode& before : MODES) {
        m_mux.SetPathConfigMode(before.mode);
        m_mux.SetPathConfigMode(GetParam().mode);
        EXPECT_EQ(m_mux.m_sw_mode, GetParam().sw_mode);
        EXPECT_EQ(m_mux.m_auto_path, GetParam().auto_path);
    }
}

TEST_P(EveryI2cPathMode, IsShownInWordsOfItsOwn) {
    m_mux.SetPathConfigMode(GetParam().mode);
    m_journal.Clear();
    m_mux.ShowPathConfigMode();
    EXPECT_EQ(m_journal.Entries(),
              (CEntries{Print("mux-1(0xa): ShowPathConfigMode\n"), Print(GetParam().shown)}));
}

TEST_P(EveryI2cPathMode, ConcernsOneSwitchAlone) {
    CJournalSwitch& mid = AddSwitch(m_mux, 0, "mid", 2, 0x71);
    m_mux.SetPathConfigMode(GetParam().mode);
    EXPECT_EQ(mid.m_auto_path, 1);
    EXPECT_FALSE(mid.m_sw_mode);
}

class I2cSwitchMode : public CThreeSwitchTest {};

TEST_F(I2cSwitchMode, IsShownAs1WhenNothingWasSet) {
    m_top.ShowPathConfigMode();
    EXPECT_EQ(m_journal.Entries(), (CEntries{Print("top-1(0x70): ShowPathConfigMode\n"),
                                             Print("1: Set and clear path per command.\n")}));
}

TEST_F(I2cSwitchMode, IsSetFromTheTopDown) {
    const CEntries told = {Trace("Set path per I2c commands. will not clear the path.\n")};

    m_top.SetSwMode(2);

    EXPECT_EQ(
        m_journal.Entries(),
        (CEntries{Trace("top-1(0x70): SetSwMode\n"), Trace("top-1(0x70): SetPathConfigMode\n")} +
         told +
         CEntries{Trace("(top-1:SetSwMode): set switch mid-2 mode to 2\n"),
                  Trace("mid-2(0x71): SetSwMode\n"), Trace("mid-2(0x71): SetPathConfigMode\n")} +
         told +
         CEntries{Trace("(mid-2:SetSwMode): set switch low-3 mode to 2\n"),
                  Trace("low-3(0x72): SetSwMode\n"), Trace("low-3(0x72): SetPathConfigMode\n")} +
         told));
    for (const CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        EXPECT_EQ(sw->m_auto_path, 2) << sw->GetName();
    }
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwitchMode, IsNotSetAboveTheSwitchThatIsTold) {
    m_mid.SetSwMode(3);
    EXPECT_FALSE(m_top.m_sw_mode);
    EXPECT_TRUE(m_mid.m_sw_mode);
    EXPECT_TRUE(m_low.m_sw_mode);
}

TEST_F(I2cSwitchMode, IsShownFromTheTopDown) {
    m_top.SetPathConfigMode(0);
    m_mid.SetPathConfigMode(3);
    m_journal.Clear();

    m_top.ShowSwMode();

    const CEntries expected = {
        Trace("top-1(0x70): ShowSwMode\n"),
        Print("top-1(0x70): ShowPathConfigMode\n"),
        Print("0: no path configuration automatically.\n"),
        Trace("(top-1:ShowSwMode): show switch mid-2 mode \n"),
        Trace("mid-2(0x71): ShowSwMode\n"),
        Print("mid-2(0x71): ShowPathConfigMode\n"),
        Print("3: Set path per every I2c transation.\n"),
        Trace("(mid-2:ShowSwMode): show switch low-3 mode \n"),
        Trace("low-3(0x72): ShowSwMode\n"),
        Print("low-3(0x72): ShowPathConfigMode\n"),
        Print("1: Set and clear path per command.\n"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchMode, ReachesEverySwitchOfEveryChannelInOrder) {
    // Created last, but on the first channel.
    AddSwitch(m_top, 0, "left", 4, 0x73);
    AddSwitch(m_top, 1, "right", 5, 0x74);
    m_top.SetSwMode(0);
    m_top.ShowSwMode();

    std::vector<std::string> handed_on;
    for (const std::string& text : m_log.Texts(0xA1)) {
        if (text.starts_with("(top-1:")) {
            handed_on.push_back(text);
        }
    }
    const std::vector<std::string> expected = {
        "(top-1:SetSwMode): set switch left-4 mode to 0\n",
        "(top-1:SetSwMode): set switch mid-2 mode to 0\n",
        "(top-1:SetSwMode): set switch right-5 mode to 0\n",
        "(top-1:ShowSwMode): show switch left-4 mode \n",
        "(top-1:ShowSwMode): show switch mid-2 mode \n",
        "(top-1:ShowSwMode): show switch right-5 mode \n",
    };
    EXPECT_EQ(handed_on, expected);
}

TEST_F(I2cSwitchMode, IsOfNoConcernToOtherNodesOfAChannel) {
    m_low.getChannelMenu(0)->AddChild(new CDiagDevice("slave", "no switch", TDEVICE),
                                      CDiagObj::NO_SORT);
    m_low.getChannelMenu(1)->AddChild(new CScriptedBus("no-switch"), CDiagObj::NO_SORT);
    m_low.SetSwMode(7);
    m_low.ShowSwMode();
    const CEntries expected = {
        Trace("low-3(0x72): SetSwMode\n"),  Trace("low-3(0x72): SetPathConfigMode\n"),
        Trace("low-3(0x72): ShowSwMode\n"), Print("low-3(0x72): ShowPathConfigMode\n"),
        Print("ERROR: invalid mode.\n"),
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwitchMode, ComesFromTheCommandOfTheBus) {
    const CAnswer reply = Send(Command("set-sw-mode"), MSG_CALL, uint8_t{3});

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    const CEntries told = {Trace("Set path per every I2c transation.\n")};
    EXPECT_EQ(
        m_journal.Entries(),
        (CEntries{Print("I2C: switch mode = 3\n"), Print("(i2c-0): SetSwMode\n"),
                  Print("(i2c-0:SetSwMode): set switch top-1(0x70) mode to 3\n"),
                  Trace("top-1(0x70): SetSwMode\n"), Trace("top-1(0x70): SetPathConfigMode\n")} +
         told +
         CEntries{Trace("(top-1:SetSwMode): set switch mid-2 mode to 3\n"),
                  Trace("mid-2(0x71): SetSwMode\n"), Trace("mid-2(0x71): SetPathConfigMode\n")} +
         told +
         CEntries{Trace("(mid-2:SetSwMode): set switch low-3 mode to 3\n"),
                  Trace("low-3(0x72): SetSwMode\n"), Trace("low-3(0x72): SetPathConfigMode\n")} +
         told));
    for (const CJournalSwitch* sw : {&m_top, &m_mid, &m_low}) {
        EXPECT_TRUE(sw->m_sw_mode) << sw->GetName();
    }
}

TEST_F(I2cSwitchMode, IsShownByTheCommandOfTheBusWithoutArgument) {
    EXPECT_EQ(Send(Command("set-sw-mode"), MSG_CALL).bytes, Bytes{SUCCESS});
    const std::vector<std::string> expected = {
        "(i2c-0): ShowSwMode\n",
        "(i2c-0:ShowSwMode): show switch top-1(0x70) mode \n",
        "top-1(0x70): ShowPathConfigMode\n",
        "1: Set and clear path per command.\n",
        "mid-2(0x71): ShowPathConfigMode\n",
        "1: Set and clear path per command.\n",
        "low-3(0x72): ShowPathConfigMode\n",
        "1: Set and clear path per command.\n",
    };
    EXPECT_EQ(m_log.Texts(0xB0), expected);
}

}  // namespace
