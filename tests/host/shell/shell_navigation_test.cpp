#include <gmock/gmock.h>

#include "host/diag_tree.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using ShellNavigation = ShellTest;
using testing::HasSubstr;

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
