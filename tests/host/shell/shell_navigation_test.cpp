#include <gmock/gmock.h>

#include "host/diag_tree.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using ShellNavigation = ShellTest;
using testing::HasSubstr;
using testing::Not;

TEST_F(ShellNavigation, GoesToMenusAndDevices) {
    EXPECT_EQ(Run("cd dev"), EXIT_PASSED);
    EXPECT_EQ(PathOf(m_shell.Current()), "/dev");
    EXPECT_EQ(Run("cd .."), EXIT_PASSED);
    EXPECT_EQ(PathOf(m_shell.Current()), "/");
    EXPECT_EQ(Run("cd .."), EXIT_PASSED);
    EXPECT_EQ(PathOf(m_shell.Current()), "/");
    EXPECT_EQ(Run("cd /dev/"), EXIT_PASSED);
    EXPECT_EQ(Run("cd"), EXIT_PASSED);
    EXPECT_EQ(PathOf(m_shell.Current()), "/");
}

TEST_F(ShellNavigation, StaysWhereItIsWhenThereIsNowhereToGo) {
    EXPECT_EQ(Run("cd dev/add"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/add is a command; cd goes to menus and devices\n");
    EXPECT_EQ(Run("cd dev/nope"), EXIT_USAGE);
    EXPECT_EQ(PathOf(m_shell.Current()), "/");
}

TEST_F(ShellNavigation, GoesToTheTopWhenItsNodeIsGone) {
    EXPECT_EQ(Run("cd gone"), EXIT_PASSED);
    EXPECT_EQ(Run("/dev/vanish"), EXIT_PASSED);
    EXPECT_EQ(PathOf(m_shell.Current()), "/");
    EXPECT_EQ(Run("ls"), EXIT_PASSED);
}

TEST_F(ShellNavigation, ListsChildrenWithTheirKind) {
    EXPECT_EQ(Run("ls"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "dev/   a device\n"
              "gone/  a menu\n");
    EXPECT_EQ(Run("ls dev"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "add       does add\n"
              "fail      does fail\n"
              "count     does count\n"
              "terse     does terse\n"
              "vanish    does vanish\n"
              "mute      does mute\n"
              "throw     does throw\n"
              "check!    a test\n"
              "name=     a text\n"
              "fixed=    a number\n"
              "memory[]  some bytes\n"
              "list[]    some bytes\n");
}

TEST_F(ShellNavigation, ShowsTheTreeWithoutCommands) {
    EXPECT_EQ(Run("tree"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/             a test board\n"
              "  dev/        a device\n"
              "    check!    a test\n"
              "    name=     a text\n"
              "    fixed=    a number\n"
              "    memory[]  some bytes\n"
              "    list[]    some bytes\n"
              "  gone/       a menu\n");
}

TEST_F(ShellNavigation, ExplainsItself) {
    EXPECT_EQ(Run("help"), EXIT_PASSED);
    for (const char* word : {"cd ", "ls ", "tree ", "help ", "peek ", "poke ", "quit"}) {
        EXPECT_THAT(printed, HasSubstr(word));
    }
    EXPECT_EQ(Run("help peek"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("usage: peek NODE [POSITION|FIRST..LAST]\n"));
}

TEST_F(ShellNavigation, ExplainsEveryKindOfNode) {
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

TEST_F(ShellNavigation, ChecksTheNumberOfArgumentsOfBuiltIns) {
    for (const char* line : {"cd a b", "ls a b", "tree a b", "help a b", "quit now", "peek",
                             "peek a b c", "poke", "poke a", "poke a b c d"}) {
        EXPECT_EQ(Run(line), EXIT_USAGE) << line;
        EXPECT_THAT(errors, HasSubstr("arguments\nusage: ")) << line;
    }
    EXPECT_FALSE(m_shell.HasQuit());
}

TEST_F(ShellNavigation, Quits) {
    EXPECT_EQ(Run("quit"), EXIT_PASSED);
    EXPECT_TRUE(m_shell.HasQuit());
}

}  // namespace
