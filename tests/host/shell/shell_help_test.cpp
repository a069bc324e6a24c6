#include <gmock/gmock.h>

#include <sstream>

#include "framework/diag_func.h"
#include "framework/diag_param.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/builtins/help_texts.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using ShellHelp = ShellTest;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

size_t LongestLine(const std::string& text) {
    size_t longest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

TEST_F(ShellHelp, ListsEveryBuiltInInItsGroup) {
    EXPECT_EQ(Run("help"), EXIT_PASSED);
    size_t last = 0;
    for (const char* group : HelpGroups()) {
        const size_t begin = printed.find("\n" + std::string(group) + "\n  ");
        ASSERT_NE(begin, std::string::npos) << group;
        EXPECT_GT(begin, last);
        last = begin;
    }
    for (const std::string& name : BuiltinNames()) {
        EXPECT_THAT(printed, HasSubstr("\n  " + name + "  "));
    }
    EXPECT_LE(LongestLine(printed), 80U);
}

TEST_F(ShellHelp, AlignsTheList) {
    EXPECT_EQ(Run("help"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("\nValues\n"
                                   "  peek     Read a value, or elements of an array.\n"
                                   "  poke     Write a value"));
}

TEST_F(ShellHelp, ExplainsEveryBuiltIn) {
    for (const CBuiltin& builtin : Builtins()) {
        ASSERT_NE(FindHelpText(builtin.name), nullptr) << builtin.name;
        EXPECT_EQ(Run(std::string("help ") + builtin.name), EXIT_PASSED);
        EXPECT_THAT(printed, StartsWith(UsageOf(builtin) + "\n"));
        EXPECT_LE(LongestLine(printed), 80U) << printed;
    }
}

TEST_F(ShellHelp, ShowsSynopsisTextAndExamplesOfABuiltIn) {
    EXPECT_EQ(Run("help cd"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "usage: cd [NODE]\n"
              "Go to a menu or device; without NODE to the top.\n"
              "The prompt shows where you are. As in a file system, .. is the node above.\n"
              "examples:\n"
              "  cd i2c-0/pca9547-0/ch1  down, from where you are\n"
              "  cd ..                   up\n"
              "  cd /i2c-1               from the top\n");
}

TEST_F(ShellHelp, ExamplesBeginWithABuiltInOrRunANode) {
    for (const std::string& name : BuiltinNames()) {
        const CHelpText* help = FindHelpText(name);
        ASSERT_NE(help, nullptr) << name;
        for (const CHelpExample& example : help->examples) {
            const std::string command = example.command;
            EXPECT_TRUE(command.starts_with(name) || command.starts_with("/")) << command;
        }
    }
}

TEST_F(ShellHelp, ExplainsTheSyntax) {
    EXPECT_EQ(Run("help syntax"), EXIT_PASSED);
    for (const char* word : {"&&", ";", "#", "0b1010", "0o12", "\\xHH", "cut short"}) {
        EXPECT_THAT(printed, HasSubstr(word));
    }
    EXPECT_LE(LongestLine(printed), 80U);
}

TEST_F(ShellHelp, ExplainsEveryKindOfNode) {
    EXPECT_EQ(Run("help dev/add"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/dev/add, a command: does add\n"
              "usage: /dev/add a [b]\n"
              "arguments:\n"
              "  a  first number (0 to 65535)\n"
              "  b  second number (0 to 255, optional)\n"
              "answers:\n"
              "  sum  their sum (0 to 4294967295)\n"
              "  note  a remark (text)\n");
    EXPECT_EQ(Run("help dev/memory"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/dev/memory, an array by address: some bytes\n"
              "uint8, positions 0x0 to 0xff\n"
              "usage: peek /dev/memory [POSITION|FIRST..LAST]\n"
              "       poke /dev/memory POSITION|FIRST..LAST VALUE\n");
    EXPECT_EQ(Run("help dev/fixed"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("uint32, read-only\n"));
    EXPECT_THAT(printed, Not(HasSubstr("poke")));
    EXPECT_EQ(Run("help /"), EXIT_PASSED);
    EXPECT_EQ(Run("help dev/add/a"), EXIT_PASSED);
}

class CManyCmd : public CDiagFunc {
  public:
    CManyCmd() : CDiagFunc("many", "takes many", 0) {
        Add("addr", PT_IN);
        for (const char* name : {"cmd0", "cmd1", "size"}) {
            Add(name, PT_IN | PT_OPTIONAL);
        }
        for (int i = 0; i < 12; ++i) {
            Add("data" + std::to_string(i), PT_IN | PT_OPTIONAL);
        }
        for (const char* name : {"x1", "x2", "y3", "z", "w01", "w02", "w03"}) {
            Add(name, PT_IN | PT_OPTIONAL);
        }
    }
    void Invoke(CInMsg&, COutMsg& out) override { out << uint8_t{MSG_SUCCESS}; }

  private:
    void Add(const std::string& name, uint8_t pt) {
        AddChild(new CDiagParam(VT_UINT8, name, "a number", pt), NO_SORT);
    }
};

TEST_F(ShellHelp, ShowsNumberedArgumentsFromTheFirstToTheLast) {
    m_root.AddChild(new CManyCmd, CDiagObj::NO_SORT);
    EXPECT_EQ(Run("help many"), EXIT_PASSED);
    EXPECT_THAT(printed,
                HasSubstr("\nusage: /many addr [cmd0] [cmd1] [size] [data0 .. data11] [x1] [x2] "
                          "[y3] [z] [w01] [w02] [w03]\n"));
    EXPECT_EQ(Run("many"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("usage: many addr [cmd0] [cmd1] [size] [data0 .. data11]"));
    EXPECT_EQ(Run("many 1 2 3 4 5"), EXIT_PASSED);
}

TEST_F(ShellHelp, EchoPrintsItsWords) {
    EXPECT_EQ(Run("echo Put  the 'plug  in' now"), EXIT_PASSED);
    EXPECT_EQ(printed, "Put the plug  in now\n");
    EXPECT_EQ(Run("echo"), EXIT_PASSED);
    EXPECT_EQ(printed, "\n");
    EXPECT_EQ(Run("echo '' x"), EXIT_PASSED);
    EXPECT_EQ(printed, " x\n");
}

}  // namespace
