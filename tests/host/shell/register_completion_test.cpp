// Tab on the arguments of the commands of a register device.
#include <gmock/gmock.h>

#include "framework/diag_param.h"
#include "host/shell/input/completion.h"
#include "tests/host/shell/register_shell.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RegisterCompletion : public RegisterShell {
  protected:
    // The line as Tab at its end leaves it.
    std::string Completed(const std::string& line) const {
        const CCompletion found = Complete(m_shell, line, line.size());
        return line.substr(0, found.begin) + found.text;
    }
    std::vector<std::string> Candidates(const std::string& line) const {
        return Complete(m_shell, line, line.size()).candidates;
    }
    std::string Hint(const std::string& line) const {
        return Complete(m_shell, line, line.size()).hint;
    }
};

TEST_F(RegisterCompletion, OffersAllRegistersWhereNothingIsTyped) {
    EXPECT_THAT(Candidates("cpld/regpeek "),
                ElementsAre("ctrl", "ctrl[0..3]", "status", "mode", "trim", "trim[0..1]", "reset"));
    EXPECT_EQ(Hint("cpld/regpeek "), "");
}

TEST_F(RegisterCompletion, CompletesTheNameOfAPlainRegister) {
    for (const std::string command : {"regpeek", "regpoke", "regset", "regclr"}) {
        EXPECT_EQ(Completed("cpld/" + command + " mo"), "cpld/" + command + " mode ");
    }
    Run("cd cpld");
    EXPECT_EQ(Completed("regpeek 'mo"), "regpeek 'mode' ");
}

TEST_F(RegisterCompletion, LeavesItOpenWhetherAnArrayIsPeekedWhole) {
    EXPECT_EQ(Completed("cpld/regpeek c"), "cpld/regpeek ctrl");
    EXPECT_THAT(Candidates("cpld/regpeek ctrl"), ElementsAre("ctrl", "ctrl[0..3]"));
}

TEST_F(RegisterCompletion, LeadsToAnElementWhereOnlyOneFits) {
    for (const std::string command : {"regpoke", "regset", "regclr"}) {
        EXPECT_EQ(Completed("cpld/" + command + " c"), "cpld/" + command + " ctrl[");
    }
    EXPECT_THAT(Candidates("cpld/regpoke "),
                ElementsAre("ctrl[0..3]", "status", "mode", "trim[0..1]", "reset"));
}

TEST_F(RegisterCompletion, OffersTheElementsBehindTheBracket) {
    EXPECT_THAT(Candidates("cpld/regpeek ctrl["),
                ElementsAre("ctrl[0]", "ctrl[1]", "ctrl[2]", "ctrl[3]"));
    EXPECT_THAT(Candidates("cpld/regset trim["), ElementsAre("trim[0]", "trim[1]"));
    EXPECT_EQ(Completed("cpld/regpeek ctrl[2"), "cpld/regpeek ctrl[2] ");
    EXPECT_THAT(Candidates("cpld/regpeek ctrl[4"), IsEmpty());
    EXPECT_THAT(Hint("cpld/regpeek ctrl[4"), HasSubstr("regname: Register Name"));
    EXPECT_THAT(Candidates("cpld/regpeek mode["), IsEmpty());
}

TEST_F(RegisterCompletion, OffersThousandsOfElementsByTheFirst) {
    m_regs[0].num_regs = 5000;
    const CCompletion found = Complete(m_shell, "cpld/regpeek ctrl[", 18);
    EXPECT_EQ(found.count, 5000U);
    EXPECT_EQ(found.candidates.back(), "ctrl[99]");
    EXPECT_EQ(Completed("cpld/regpeek ctrl[4321"), "cpld/regpeek ctrl[4321] ");
}

TEST_F(RegisterCompletion, OffersNamesForAPatternWithoutAnIndex) {
    for (const std::string command : {"regdump", "regtable"}) {
        EXPECT_THAT(Candidates("cpld/" + command + " "),
                    ElementsAre("ctrl", "status", "mode", "trim", "reset"));
        EXPECT_EQ(Completed("cpld/" + command + " c"), "cpld/" + command + " ctrl ");
        EXPECT_THAT(Candidates("cpld/" + command + " ctrl["), IsEmpty());
    }
}

TEST_F(RegisterCompletion, OffersNoRegistersForTheOtherArguments) {
    EXPECT_THAT(Candidates("cpld/regpoke mode "), IsEmpty());
    EXPECT_THAT(Hint("cpld/regpoke mode "), HasSubstr("regvalue: Register Value"));
    EXPECT_THAT(Candidates("cpld/regpeek mode "), IsEmpty());
}

TEST_F(RegisterCompletion, OffersNoRegistersWhereTheDeviceHasNone) {
    auto* command = new CDiagMenu(TFUNC, "find", "a command");
    command->AddChild(new CDiagParam(VT_STRING, "pattern", "what", PT_IN), CDiagObj::NO_SORT);
    m_device->AddChild(command, CDiagObj::NO_SORT);
    EXPECT_THAT(Candidates("dev/find "), IsEmpty());
    m_table.num_regs = 0;
    EXPECT_THAT(Candidates("cpld/regpeek "), IsEmpty());
}

}  // namespace
