// "regset" and "regclr" of a register device, which differ in one thing only.
#include "tests/i2c/register_test.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct CCase {
    std::string command;
    uint64_t with_0x0f;  // what 0x35 becomes
};
void PrintTo(const CCase& one, std::ostream* out) {
    *out << one.command;
}

class EveryI2cRegisterBitsCommand : public CRegisterTest,
                                    public testing::WithParamInterface<CCase> {
  protected:
    CAnswer Change(const std::string& reg, uint64_t mask) {
        return Send(RegCommand(GetParam().command), MSG_CALL, reg, mask);
    }
    // Answers failure and says nothing but this, before the path is opened.
    void ExpectRefused(const std::string& reg, const std::string& error) {
        SCOPED_TRACE(reg);
        m_journal.Clear();
        EXPECT_EQ(Change(reg, 1).bytes, Bytes{FAIL});
        EXPECT_EQ(m_journal.Entries(), CEntries{ArgError(error)});
    }
    // Reads the element, writes what `mask` 0x0F makes of 0x35, and closes the path.
    CEntries Changing(const std::string& element) const {
        return m_path_opened + Access("read " + element) +
               Access("write " + element + " = " + std::to_string(GetParam().with_0x0f)) +
               m_path_closed;
    }
};
INSTANTIATE_TEST_SUITE_P(, EveryI2cRegisterBitsCommand,
                         testing::Values(CCase{"regset", 0x3F}, CCase{"regclr", 0x30}),
                         [](const auto& one) { return one.param.command; });

TEST_P(EveryI2cRegisterBitsCommand, ChangesTheBitsOfAPlainRegister) {
    m_cpld.m_data["mode[0]"] = 0x35;
    EXPECT_EQ(Change("mode", 0x0F).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), Changing("mode[0]"));
}

TEST_P(EveryI2cRegisterBitsCommand, ChangesTheBitsOfOneElement) {
    m_cpld.m_data["ctrl[3]"] = 0x35;
    EXPECT_EQ(Change("ctrl[3]", 0x0F).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_journal.Entries(), Changing("ctrl[3]"));
}

TEST_P(EveryI2cRegisterBitsCommand, NeedsNoPathOnARootBus) {
    CTestRegisterChip chip(m_journal, "new", &m_table, &m_bus);
    chip.m_data["mode[0]"] = 0x35;
    EXPECT_EQ(
        Send(NodeAt(chip, GetParam().command), MSG_CALL, std::string("mode"), uint64_t{0x0F}).bytes,
        Bytes{SUCCESS});
    EXPECT_EQ(chip.m_data["mode[0]"], GetParam().with_0x0f);
    EXPECT_EQ(m_journal.Entries().size(), 2U);
}

TEST_P(EveryI2cRegisterBitsCommand, RefusesAnUnknownRegisterWithoutADump) {
    ExpectRefused("nothing[3]", "No register named nothing");
    ExpectRefused("st", "No register named st");
}

TEST_P(EveryI2cRegisterBitsCommand, RefusesAnArrayWithoutAnIndexByTheSameText) {
    ExpectRefused("ctrl", "Set bits on array must have index");
}

TEST_P(EveryI2cRegisterBitsCommand, LeavesAnIndexBehindTheEndToTheAccess) {
    for (const char* reg : {"ctrl[4]", "mode[1]"}) {
        SCOPED_TRACE(reg);
        m_journal.Clear();
        EXPECT_EQ(Change(reg, 1).bytes, Bytes{FAIL});
        const CEntries& entries = m_journal.Entries();
        ASSERT_GE(entries.size(), m_path_opened.size());
        EXPECT_EQ(CEntries(entries.begin(), entries.begin() + std::ssize(m_path_opened)),
                  m_path_opened);
        EXPECT_THAT(m_journal.Calls(), ElementsAre("top-1: SelChannel(0)", "mux-2: SelChannel(1)"));
        EXPECT_TRUE(IsPathOpen());
    }
}

TEST_P(EveryI2cRegisterBitsCommand, ReadsNothingWhenThePathCannotBeOpened) {
    FailToOpen();
    EXPECT_EQ(Change("mode", 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + m_cannot_open);
}

TEST_P(EveryI2cRegisterBitsCommand, LeavesThePathOpenAfterAFailedReadAndSaysNothing) {
    m_cpld.FailAt("read mode[0]");
    EXPECT_EQ(Change("mode", 1).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(), m_path_opened + Access("read mode[0]"));
    EXPECT_TRUE(IsPathOpen());
}

TEST_P(EveryI2cRegisterBitsCommand, LeavesThePathOpenAfterAFailedWriteAndSaysNothing) {
    m_cpld.m_data["mode[0]"] = 0x35;
    m_cpld.FailAt("write mode[0]");
    EXPECT_EQ(Change("mode", 0x0F).bytes, Bytes{FAIL});
    EXPECT_EQ(m_journal.Entries(),
              m_path_opened + Access("read mode[0]") +
                  Access("write mode[0] = " + std::to_string(GetParam().with_0x0f)));
    EXPECT_TRUE(IsPathOpen());
}

TEST_P(EveryI2cRegisterBitsCommand, FailsAfterTheWriteWhenThePathCannotBeClosed) {
    FailToClose();
    m_cpld.m_data["mode[0]"] = 0x35;
    EXPECT_EQ(Change("mode", 0x0F).bytes, Bytes{FAIL});
    EXPECT_EQ(m_cpld.m_data["mode[0]"], GetParam().with_0x0f);
    EXPECT_EQ(m_journal.Entries().back(), m_cannot_disable.front());
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
}

TEST_P(EveryI2cRegisterBitsCommand, ReadsNothingForBitsThatTheRegisterDoesNotHave) {
    EXPECT_EQ(Change("ctrl[0]", 0x10000).bytes, Bytes{FAIL});
    EXPECT_EQ(Change("limit", 0xFFFFFFFFFFFFFF00).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x40), ElementsAre("0x10000 does not fit register ctrl\n",
                                               "0xffffffffffffff00 does not fit register limit\n"));
    EXPECT_THAT(m_journal.Calls(), Not(Contains(HasSubstr("cpld"))));
    EXPECT_TRUE(IsPathOpen());
}

TEST_P(EveryI2cRegisterBitsCommand, TakesAMaskOf64Bits) {
    Entry("mode").dtype = VT_UINT64;
    m_cpld.m_data["mode[0]"] = 0xF000000000000000;
    EXPECT_EQ(Change("mode", 0x8000000000000001).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_cpld.m_data["mode[0]"],
              GetParam().command == "regset" ? 0xF000000000000001 : 0x7000000000000000);
}

}  // namespace
