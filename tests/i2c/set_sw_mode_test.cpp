#include "tests/i2c/bus_test.h"
#include "tests/support/fake_switch.h"

namespace {

class I2cSwMode : public CBusTest {
  protected:
    CFakeSwitch& AddSwitch(const std::string& name, uint8_t addr) {
        auto* sw = new CFakeSwitch(m_journal, name, addr);
        m_bus.AddChild(sw, CDiagObj::NO_SORT);
        return *sw;
    }

    CJournal m_journal;
};

TEST_F(I2cSwMode, IsSetInEverySwitchOfTheBus) {
    const std::string first = AddSwitch("mux-b", 0x71).GetName();
    const std::string second = AddSwitch("mux-a", 0x09).GetName();

    m_bus.SetSwMode(2);

    const std::vector<CJournal::Entry> expected = {
        Print("(i2c-0): SetSwMode\n"),
        Print("(i2c-0:SetSwMode): set switch " + first + "(0x71) mode to 2\n"),
        {CJournal::CALL, first + ": SetSwMode(2)"},
        Print("(i2c-0:SetSwMode): set switch " + second + "(0x9) mode to 2\n"),
        {CJournal::CALL, second + ": SetSwMode(2)"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwMode, IsPassedOnByTheBusWhateverItIs) {
    const std::string mux = AddSwitch("mux", 0x70).GetName();

    m_bus.SetSwMode(200);

    const std::vector<CJournal::Entry> expected = {
        Print("(i2c-0): SetSwMode\n"),
        Print("(i2c-0:SetSwMode): set switch " + mux + "(0x70) mode to 200\n"),
        {CJournal::CALL, mux + ": SetSwMode(200)"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSwMode, IsShownByEverySwitchOfTheBus) {
    const std::string first = AddSwitch("mux-b", 0x71).GetName();
    const std::string second = AddSwitch("mux-a", 0x09).GetName();

    m_bus.ShowSwMode();

    const std::vector<CJournal::Entry> expected = {
        Print("(i2c-0): ShowSwMode\n"),
        Print("(i2c-0:ShowSwMode): show switch " + first + "(0x71) mode \n"),
        {CJournal::CALL, first + ": ShowSwMode()"},
        Print("(i2c-0:ShowSwMode): show switch " + second + "(0x9) mode \n"),
        {CJournal::CALL, second + ": ShowSwMode()"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
    EXPECT_TRUE(m_bus.Seen().empty());
}

TEST_F(I2cSwMode, ConcernsOnlySwitchesDirectlyBelowTheBus) {
    auto* menu = new CDiagMenu(TMENU, "shelf", "not a device");
    m_bus.AddChild(menu, CDiagObj::NO_SORT);
    menu->AddChild(new CFakeSwitch(m_journal, "far", 0x70), CDiagObj::NO_SORT);
    m_bus.AddChild(new CDiagDevice("slave", "no switch", TDEVICE), CDiagObj::NO_SORT);

    m_bus.SetSwMode(1);
    m_bus.ShowSwMode();

    EXPECT_EQ(m_journal.Entries(),
              (CLines{Print("(i2c-0): SetSwMode\n"), Print("(i2c-0): ShowSwMode\n")}));
}

class I2cSetSwModeCommand : public I2cSwMode {
  protected:
    CAnswer SetMode(uint8_t mode) { return Send(Command("set-sw-mode"), MSG_CALL, mode); }
};

TEST_F(I2cSetSwModeCommand, ShowsTheModesWithoutArgument) {
    const std::string mux = AddSwitch("mux", 0x70).GetName();

    const CAnswer reply = Send(Command("set-sw-mode"), MSG_CALL);

    EXPECT_EQ(reply.bytes, Bytes{SUCCESS});
    const std::vector<CJournal::Entry> expected = {
        Print("(i2c-0): ShowSwMode\n"),
        Print("(i2c-0:ShowSwMode): show switch " + mux + "(0x70) mode \n"),
        {CJournal::CALL, mux + ": ShowSwMode()"},
    };
    EXPECT_EQ(m_journal.Entries(), expected);
}

TEST_F(I2cSetSwModeCommand, SetsEachModeFrom0To3) {
    const std::string mux = AddSwitch("mux", 0x70).GetName();
    for (const uint8_t mode : Bytes{0, 1, 2, 3}) {
        m_journal.Clear();
        const std::string text = std::to_string(mode);

        EXPECT_EQ(SetMode(mode).bytes, Bytes{SUCCESS});

        const std::vector<CJournal::Entry> expected = {
            Print("I2C: switch mode = " + text + "\n"),
            Print("(i2c-0): SetSwMode\n"),
            Print("(i2c-0:SetSwMode): set switch " + mux + "(0x70) mode to " + text + "\n"),
            {CJournal::CALL, mux + ": SetSwMode(" + text + ")"},
        };
        EXPECT_EQ(m_journal.Entries(), expected);
    }
}

TEST_F(I2cSetSwModeCommand, RefusesALargerMode) {
    AddSwitch("mux", 0x70);
    for (const uint8_t mode : Bytes{4, 5, 127, 128, 255}) {
        m_journal.Clear();

        EXPECT_EQ(SetMode(mode).bytes, Bytes{FAIL});

        const std::vector<CJournal::Entry> expected = {
            Print("I2C: switch mode = " + std::to_string(mode) + "\n"),
            ArgError("ERROR: mode arg must be less than 3!\n"),
        };
        EXPECT_EQ(m_journal.Entries(), expected);
    }
}

TEST_F(I2cSetSwModeCommand, SucceedsOnABusWithoutSwitches) {
    EXPECT_EQ(SetMode(1).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(),
              (CLines{Print("I2C: switch mode = 1\n"), Print("(i2c-0): SetSwMode\n")}));
}

TEST_F(I2cSetSwModeCommand, TransfersNothing) {
    AddSwitch("mux", 0x70);
    SetMode(3);
    Send(Command("set-sw-mode"), MSG_CALL);
    EXPECT_TRUE(m_bus.Seen().empty());
    EXPECT_EQ(m_journal.Calls().size(), 2U);
}

TEST_F(I2cSetSwModeCommand, IgnoresInputBehindTheMode) {
    EXPECT_EQ(Send(Command("set-sw-mode"), MSG_CALL, CNumbers{{3, 9, 9}}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(),
              (CLines{Print("I2C: switch mode = 3\n"), Print("(i2c-0): SetSwMode\n")}));
}

}  // namespace
