// "regpoke" of a register device, and after which failures it leaves the path open.
#include "tests/i2c/register_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class I2cRegisterPoke : public CRegisterTest {
  protected:
    // Answers failure and says nothing but this, before the path is opened.
    void ExpectRefused(const std::string& reg, const std::string& error) {
        SCOPED_TRACE(reg);
        m_journal.Clear();
        EXPECT_EQ(Poke(reg, 1).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries(), CEntries{ArgError(error)});
    }

    const CEntries m_bad_value = {{0x40, "invalid poke value"}};
};

TEST_F(I2cRegisterPoke, WritesAPlainRegisterWithThePathOpen) {
    EXPECT_EQ(Poke("mode", 0x12345678).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(),
              m_path_opened + Access("write mode[0] = 305419896") + m_path_closed);
}

TEST_F(I2cRegisterPoke, WritesOneElementOfAnArray) {
    EXPECT_EQ(Poke("ctrl[3]", 0xFFFF).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("write ctrl[3] = 65535") + m_path_closed);
}

TEST_F(I2cRegisterPoke, LetsAPlainRegisterHaveTheIndexZero) {
    EXPECT_EQ(Poke("mode[0]", 1).bytes, Bytes{SUCCESS});
    EXPECT_THAT(m_journal.Calls(), testing::Contains("cpld: write mode[0] = 1"));
}

TEST_F(I2cRegisterPoke, LeavesItToTheBoardWhatMayBeWritten) {
    for (const char* reg : {"status", "cause", "reset"}) {
        EXPECT_EQ(Poke(reg, 1).bytes, Bytes{SUCCESS}) << reg;
        EXPECT_THAT(m_journal.Calls(),
                    testing::Contains("cpld: write " + std::string(reg) + "[0] = 1"));
    }
}

TEST_F(I2cRegisterPoke, ConvertsTheNumberToTheTypeOfTheRegister) {
    EXPECT_EQ(Poke("limit", static_cast<uint64_t>(-40)).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Peek("limit").bytes, CBytes().U8(SUCCESS).Text("-40").Get());
}

TEST_F(I2cRegisterPoke, NeedsNoPathOnARootBus) {
    CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    EXPECT_EQ(Send(NodeAt(chip, "regpoke"), MSG_CALL, std::string("mode"), uint64_t{2}).bytes,
              Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), CEntries{Call("new: write mode[0] = 2")});
}

// What is refused before the path is opened

TEST_F(I2cRegisterPoke, RefusesAnUnknownRegisterWithoutADump) {
    ExpectRefused("nothing[3]", "No register named nothing");
    ExpectRefused("st", "No register named st");
    ExpectRefused("", "No register named ");
}

TEST_F(I2cRegisterPoke, RefusesAnArrayWithoutAnIndex) {
    ExpectRefused("ctrl", "poke on array must have index");
}

TEST_F(I2cRegisterPoke, RefusesAnIndexBehindTheEnd) {
    ExpectRefused("ctrl[4]", "ctrl[4] invalid index, valid range 0 to 3");
    ExpectRefused("mode[1]", "mode[1] invalid index, valid range 0 to 0");
}

TEST_F(I2cRegisterPoke, RefusesARegisterWithoutElements) {
    ExpectRefused("none", "none[0] invalid index, valid range 0 to -1");
}

// What leaves the path as it is

TEST_F(I2cRegisterPoke, WritesNothingWhenThePathCannotBeOpened) {
    FailToOpen();
    EXPECT_EQ(Poke("mode", 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_F(I2cRegisterPoke, LooksAtTheValueOnlyWithThePathOpen) {
    FailToOpen();
    EXPECT_EQ(Poke("status", 0x100).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_F(I2cRegisterPoke, LeavesThePathOpenAfterAValueThatDoesNotFit) {
    EXPECT_EQ(Poke("status", 0x100).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_bad_value);
    EXPECT_TRUE(IsPathOpen());
}

TEST_F(I2cRegisterPoke, LeavesThePathOpenAfterAValueForATypeThatTakesNone) {
    EXPECT_EQ(Poke("serial", 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_bad_value);
    EXPECT_TRUE(IsPathOpen());
}

TEST_F(I2cRegisterPoke, LeavesThePathOpenAfterAFailedWriteAndSaysNothing) {
    m_cpld.FailAt("write mode[0]");
    EXPECT_EQ(Poke("mode", 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("write mode[0] = 1"));
    EXPECT_TRUE(IsPathOpen());
}

TEST_F(I2cRegisterPoke, FailsAfterTheWriteWhenThePathCannotBeClosed) {
    FailToClose();
    EXPECT_EQ(Poke("mode", 7).bytes, Bytes{FAIL});
    EXPECT_EQ(m_cpld.m_data["mode[0]"], 7U);
    EXPECT_EQ(m_journal.Entries().back(), m_cannot_disable.front());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
    EXPECT_THAT(m_log.Texts(0x40), IsEmpty());
}

}  // namespace
