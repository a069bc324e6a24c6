// Paths as they are typed: cut short, ambiguous, mistyped.
#include <gmock/gmock.h>

#include "host/diag_tree.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

// Below /dev also the menus mux-0 and mux-1, with the channels ch0 to ch9 each.
class ShellPath : public ShellTest {
  protected:
    ShellPath() {
        for (const char* mux : {"mux-0", "mux-1"}) {
            auto* menu = new CDiagMenu(TMENU, mux, "a multiplexer");
            m_device->AddChild(menu, CDiagObj::NO_SORT);
            for (int i = 0; i < 10; ++i) {
                menu->AddChild(new CDiagMenu(TMENU, "ch" + std::to_string(i), "a channel"),
                               CDiagObj::NO_SORT);
            }
        }
    }

    // Where "cd PATH" leads from the top; empty when nowhere.
    std::string Goal(const std::string& path) {
        const std::string goal = Run("cd " + path) == EXIT_PASSED ? PathOf(m_shell.Current()) : "";
        Run("cd");
        return goal;
    }
};

TEST_F(ShellPath, MayCutEachNameShort) {
    EXPECT_EQ(Goal("d"), "/dev");
    EXPECT_EQ(Goal("/d/mux-0/ch3"), "/dev/mux-0/ch3");
    EXPECT_EQ(Goal("de/mux-1/../mux-0/./ch3/"), "/dev/mux-0/ch3");
    EXPECT_EQ(Run("/d/ad 1 2"), EXIT_PASSED);
    EXPECT_EQ(printed, "adding 1 and 2\nsum = 3\nnote = done\n");
    EXPECT_EQ(Run("peek d/fix"), EXIT_PASSED);
    EXPECT_EQ(printed, "fixed = 0x1234\n");
}

TEST_F(ShellPath, ShowsFullNamesWhateverWasTyped) {
    EXPECT_EQ(Run("/d/c pass"), EXIT_USAGE);
    EXPECT_EQ(Run("/d/ch pass"), EXIT_PASSED);
    EXPECT_EQ(printed, "check: passed\n");
    EXPECT_EQ(Run("/d/fai"), EXIT_FAILED);
    EXPECT_THAT(errors, EndsWith("/dev/fail: failed (ERR_FAIL)\n"));
}

TEST_F(ShellPath, ListsWhatAnAmbiguousNameMayBe) {
    EXPECT_EQ(Run("cd /dev/mux"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/mux: \"mux\" in /dev may be any of: mux-0, mux-1\n");
    EXPECT_EQ(Run("cd dev/mux-1/c"), EXIT_USAGE);
    EXPECT_EQ(errors,
              "dev/mux-1/c: \"c\" in /dev/mux-1 may be any of: "
              "ch0, ch1, ch2, ch3, ch4, ch5, ch6, ch7, ... and 2 more\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellPath, TakesAWholeNameBeforeOnesThatBeginWithIt) {
    m_root.AddChild(new CDiagMenu(TMENU, "device", "longer"), CDiagObj::NO_SORT);
    EXPECT_EQ(Goal("dev"), "/dev");
    EXPECT_EQ(Goal("devi"), "/device");
    EXPECT_EQ(Run("cd de"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("may be any of: dev, device\n"));
}

TEST_F(ShellPath, TakesABuiltInBeforeANode) {
    m_root.AddChild(new CDiagMenu(TMENU, "quitting", "a menu"), CDiagObj::NO_SORT);
    m_root.AddChild(new CDiagMenu(TMENU, "ls", "a menu"), CDiagObj::NO_SORT);
    EXPECT_EQ(Run("qui"), EXIT_USAGE);
    EXPECT_EQ(errors, "/quitting is a menu; cd /quitting goes there, ls /quitting lists it\n");
    EXPECT_FALSE(m_shell.HasQuit());
    EXPECT_EQ(Run("ls gone"), EXIT_PASSED);
    EXPECT_EQ(Run("./ls"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("/ls is a menu"));
    EXPECT_EQ(Run("quit"), EXIT_PASSED);
    EXPECT_TRUE(m_shell.HasQuit());
}

TEST_F(ShellPath, NamesParametersInFullOnly) {
    EXPECT_EQ(Run("help dev/add/note"), EXIT_PASSED);
    EXPECT_EQ(Run("help dev/add/no"), EXIT_USAGE);
    EXPECT_EQ(errors, "dev/add/no: /dev/add is a command; there is nothing below it\n");
}

TEST_F(ShellPath, IsAnsweredWithNearNamesWhenItIsMistyped) {
    EXPECT_EQ(Run("/dev/ad/x"), EXIT_USAGE);
    EXPECT_EQ(Run("cd /dve/mux-0"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dve/mux-0: there is no \"dve\" in /; did you mean dev?\n");
    EXPECT_EQ(Run("cd dev"), EXIT_PASSED);
    EXPECT_EQ(Run("peek memroy"), EXIT_USAGE);
    EXPECT_EQ(errors, "memroy: there is no \"memroy\" in /dev; did you mean memory?\n");
    EXPECT_EQ(Run("/dev/mux-3"), EXIT_USAGE);
    EXPECT_THAT(errors, EndsWith("; did you mean mux-0 or mux-1?\n"));
    EXPECT_EQ(Run("FAIL"), EXIT_USAGE);
    EXPECT_EQ(errors, "FAIL: there is no \"FAIL\" in /dev; did you mean fail?\n");
}

TEST_F(ShellPath, IsAnsweredWithBuiltInsWhereOneMayStand) {
    EXPECT_EQ(Run("tere"), EXIT_USAGE);
    EXPECT_EQ(errors, "tere: there is no \"tere\" in /; did you mean tree?\n");
    EXPECT_EQ(Run("help pokee"), EXIT_USAGE);
    EXPECT_THAT(errors, EndsWith("did you mean poke?\n"));
    EXPECT_EQ(Run("help sintax"), EXIT_USAGE);
    EXPECT_THAT(errors, EndsWith("did you mean syntax?\n"));
    EXPECT_EQ(Run("cd tere"), EXIT_USAGE);
    EXPECT_EQ(errors, "tere: there is no \"tere\" in /; try ls or help\n");
    EXPECT_EQ(Run("./tere"), EXIT_USAGE);
    EXPECT_EQ(errors, "./tere: there is no \"tere\" in /; try ls or help\n");
}

TEST_F(ShellPath, IsPrintedWithPwd) {
    EXPECT_EQ(Run("pwd"), EXIT_PASSED);
    EXPECT_EQ(printed, "/\n");
    EXPECT_EQ(Run("cd d/mux-1"), EXIT_PASSED);
    EXPECT_EQ(Run("pwd"), EXIT_PASSED);
    EXPECT_EQ(printed, "/dev/mux-1\n");
}

}  // namespace
