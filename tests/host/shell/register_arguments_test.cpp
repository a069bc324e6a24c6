// Registers at the prompt: names that were mistyped, values as they are shown, help.
#include <gmock/gmock.h>

#include "framework/diag_functions.h"
#include "tests/host/shell/register_shell.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using NearRegisters = RegisterShell;
using RegisterValue = RegisterShell;
using RegisterHelp = RegisterShell;

TEST_F(NearRegisters, AreAskedForBehindTheErrorOfEveryCommand) {
    for (const std::string line :
         {"regpeek mdoe", "regpoke mdoe 1", "regset mdoe 1", "regclr mdoe 1", "regpeek mdoe[2]"}) {
        EXPECT_EQ(Run("cpld/" + line), EXIT_FAILED);
        EXPECT_EQ(printed, "No register named mdoe\ndid you mean mode?\n") << line;
    }
    EXPECT_THAT(m_cpld->m_reads, IsEmpty());
    EXPECT_THAT(m_cpld->m_writes, IsEmpty());
}

TEST_F(NearRegisters, AreThoseThatBeginSoWhereOnlyOneFits) {
    EXPECT_EQ(Run("cpld/regpoke re 1"), EXIT_FAILED);
    EXPECT_EQ(printed, "No register named re\ndid you mean reset?\n");
    EXPECT_EQ(Run("cpld/regpeek re"), EXIT_PASSED);
    EXPECT_THAT(printed, Not(HasSubstr("did you mean")));
}

TEST_F(NearRegisters, AreElementsWhereTheIndexIsNone) {
    EXPECT_EQ(Run("cpld/regpoke ctrl[x] 1"), EXIT_FAILED);
    EXPECT_EQ(printed, "No register named ctrl[x]\ndid you mean ctrl[0] to ctrl[3]?\n");
    EXPECT_EQ(Run("cpld/regpoke mode[] 1"), EXIT_FAILED);
    EXPECT_EQ(printed, "No register named mode[]\ndid you mean mode?\n");
}

TEST_F(NearRegisters, AreAskedForWhereNoneMatchesAPattern) {
    for (const std::string command : {"regdump", "regtable"}) {
        EXPECT_EQ(Run("cpld/" + command + " statsu"), EXIT_FAILED);
        EXPECT_EQ(printed, "No register matches statsu\ndid you mean status?\n");
    }
}

TEST_F(NearRegisters, AreNotAskedForWhereNoneIsNear) {
    EXPECT_EQ(Run("cpld/regpeek voltage"), EXIT_FAILED);
    EXPECT_EQ(printed, "No register named voltage\n");
    EXPECT_EQ(Run("cpld/regdump voltage"), EXIT_FAILED);
    EXPECT_EQ(printed, "No register matches voltage\n");
}

TEST_F(NearRegisters, AreNotAskedForWhereARegisterIsNamed) {
    m_cpld->m_fail_read = "mode";
    EXPECT_EQ(Run("cpld/regpeek mode"), EXIT_FAILED);
    EXPECT_THAT(printed, Not(HasSubstr("did you mean")));
    EXPECT_EQ(Run("cpld/regpeek ctrl[7]"), EXIT_FAILED);
    EXPECT_EQ(printed, "ctrl[7] invalid index, valid range 0 to 3\nregvalue = ??? (failed)\n");
    EXPECT_EQ(Run("cpld/regdump mode"), EXIT_FAILED);
    EXPECT_THAT(printed, Not(HasSubstr("did you mean")));
}

TEST_F(NearRegisters, AreNotAskedForWhereAPatternNamesSome) {
    m_cpld->m_fail_read = "mode";
    for (const std::string pattern : {"mo", "m*"}) {
        EXPECT_EQ(Run("cpld/regpeek " + pattern), EXIT_FAILED);
        EXPECT_THAT(printed, HasSubstr("mode             ???\n"));
        EXPECT_THAT(printed, Not(HasSubstr("did you mean")));
    }
}

TEST_F(NearRegisters, AreAskedForInAJobToo) {
    Catch();
    m_shell.Execute("cpld/regpeek mdoe &");
    m_shell.Execute("wait");
    Caught();
    EXPECT_THAT(printed, HasSubstr("[1] No register named mdoe\n[1] did you mean mode?\n"));
}

TEST_F(RegisterValue, IsTakenAsItIsShown) {
    struct CShown {
        EValueType type;
        uint64_t bits;
    };
    const std::vector<CShown> values = {
        {VT_INT8, 0x80},        {VT_INT8, 0x7F},        {VT_INT8, 0xFB},
        {VT_UINT8, 0xFF},       {VT_INT16, 0x8000},     {VT_INT16, 0xFFFE},
        {VT_UINT16, 0xFFFF},    {VT_INT32, 1U << 31},   {VT_UINT32, 0xFFFFFFFF},
        {VT_INT64, 1ULL << 63}, {VT_INT64, UINT64_MAX}, {VT_UINT64, UINT64_MAX},
        {VT_INT64, 0},          {VT_UINT8, 0},
    };
    for (const uint8_t format : {uint8_t{0}, VF_HEX, static_cast<uint8_t>(VF_HEX | VF_PAD)}) {
        for (const CShown& value : values) {
            m_regs[2].dtype = value.type;
            m_regs[2].format = format;
            m_cpld->m_data["mode"] = value.bits;
            ASSERT_EQ(Run("cpld/regpeek mode"), EXIT_PASSED);
            const size_t begin = printed.find("= ") + 2;
            const std::string text = printed.substr(begin, printed.find('\n') - begin);
            m_cpld->m_data["mode"] = 1;
            EXPECT_EQ(Run("cpld/regpoke mode " + text), EXIT_PASSED) << text << errors;
            EXPECT_EQ(m_cpld->m_data["mode"], value.bits) << text;
        }
    }
}

TEST_F(RegisterValue, IsShownInTheFormatOfTheRegister) {
    m_cpld->m_data = {{"ctrl[0]", 1}, {"ctrl[1]", 0x22}, {"status", 5}, {"trim[1]", 0xFB}};
    Run("cpld/regpeek ctrl");
    EXPECT_EQ(printed, "regvalue = 0x0001 0x0022 0x0000 0x0000\n");
    Run("cpld/regpeek status");
    EXPECT_EQ(printed, "regvalue = 0x5\n");
    Run("cpld/regpeek trim[1]");
    EXPECT_EQ(printed, "regvalue = -5\n");
}

TEST_F(RegisterValue, HasASignOnlyWhereTheRegisterHas) {
    EXPECT_EQ(Run("cpld/regpoke mode -1"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("argument regvalue: -1 is out of range"));
    EXPECT_EQ(Run("cpld/regpoke nothing -1"), EXIT_USAGE);
    EXPECT_EQ(Run("cpld/regset trim[0] -1"), EXIT_USAGE);
    EXPECT_THAT(m_cpld->m_writes, IsEmpty());
}

TEST_F(RegisterValue, IsRefusedWhereTheRegisterCannotHoldIt) {
    for (const std::string value : {"-129", "128", "251", "0x100", "0x1fb"}) {
        EXPECT_EQ(Run("cpld/regpoke trim[0] " + value), EXIT_FAILED) << value;
    }
    EXPECT_EQ(Run("cpld/regpoke trim[0] -0x8000000000000001"), EXIT_USAGE);
    EXPECT_EQ(Run("cpld/regpoke trim[0] five"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("argument regvalue: \"five\" is not a number"));
    EXPECT_THAT(m_cpld->m_writes, IsEmpty());
}

TEST_F(RegisterValue, TakesAMaskOfAllItsBitsAndNoMore) {
    m_cpld->m_data["trim[0]"] = 0x01;
    EXPECT_EQ(Run("cpld/regset trim[0] 0x80"), EXIT_PASSED);
    EXPECT_EQ(m_cpld->m_data["trim[0]"], 0x81U);
    EXPECT_EQ(Run("cpld/regclr trim[0] 0xff"), EXIT_PASSED);
    EXPECT_EQ(m_cpld->m_data["trim[0]"], 0U);
    EXPECT_EQ(Run("cpld/regset trim[0] 0x100"), EXIT_FAILED);
    EXPECT_EQ(Run("cpld/regset ctrl[0] 0x10000"), EXIT_FAILED);
    EXPECT_EQ(printed, "0x10000 does not fit register ctrl\n");
    EXPECT_THAT(m_cpld->m_writes, ElementsAre("trim[0]", "trim[0]"));
}

TEST_F(RegisterHelp, TellsHowAnElementIsNamed) {
    EXPECT_EQ(Run("help cpld/regpoke"), EXIT_PASSED);
    EXPECT_THAT(printed,
                EndsWith("  regvalue  Register Value (0 to 18446744073709551615)\n"
                         "A register is named as regtable lists it, an element of an array as "
                         "NAME[INDEX],\nhere ctrl[0] to ctrl[3].\n"));
}

TEST_F(RegisterHelp, NamesNoArrayWhereThereIsNone) {
    m_regs[0].num_regs = 1;
    m_regs[3].num_regs = 0;
    EXPECT_EQ(Run("help cpld/regset"), EXIT_PASSED);
    EXPECT_THAT(printed, EndsWith("an element of an array as NAME[INDEX].\n"));
}

TEST_F(RegisterHelp, TellsWhatAPeekReadsBesides) {
    EXPECT_EQ(Run("help cpld/regpeek"), EXIT_PASSED);
    EXPECT_THAT(printed, EndsWith("here ctrl[0] to ctrl[3].\n"
                                  "An array without an index is read whole. What names no register "
                                  "reads all that\nbegin so, or that fit the wildcards *, ? and "
                                  "[...] in it.\n"));
    EXPECT_EQ(Run("cpld/regpeek *t*"), EXIT_PASSED);
    EXPECT_THAT(m_cpld->m_reads, ElementsAre("ctrl[0]", "ctrl[1]", "ctrl[2]", "ctrl[3]", "status",
                                             "trim[0]", "trim[1]"));
}

TEST_F(RegisterHelp, TellsWhatAPatternIs) {
    for (const std::string command : {"regdump", "regtable"}) {
        EXPECT_EQ(Run("help cpld/" + command), EXIT_PASSED);
        EXPECT_THAT(printed,
                    EndsWith("pattern is the beginning of names, or has wildcards: *, ? or "
                             "[...].\n"));
    }
    EXPECT_EQ(Run("help dev/add"), EXIT_PASSED);
    EXPECT_THAT(printed, EndsWith("  note  a remark (text)\n"));
}

}  // namespace
