// ls, tree and find.
#include <gmock/gmock.h>

#include "framework/diag_exception.h"
#include "framework/diag_value.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using ShellListing = ShellTest;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Counts how often it is read, and may fail.
class CCountedValue : public CDiagValue<uint8_t> {
  public:
    CCountedValue(const std::string& name, uint8_t vt)
        : CDiagValue<uint8_t>(name, "a counted value", true, vt) {}
    void Set(const uint8_t&) override {}
    uint8_t Get() override {
        ++reads;
        if (broken) {
            throw CDiagException("no contact");
        }
        return 7;
    }

    unsigned int reads = 0;
    bool broken = false;
};

TEST_F(ShellListing, ShowsChildrenWithTheirKind) {
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

TEST_F(ShellListing, ShowsTypesAndValuesInTheLongForm) {
    EXPECT_EQ(Run("ls -l"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "device  dev/   a device\n"
              "menu    gone/  a menu\n");
    EXPECT_EQ(Run("ls -l dev"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "command    add                  does add\n"
              "command    fail                 does fail\n"
              "command    count                does count\n"
              "command    terse                does terse\n"
              "command    vanish               does vanish\n"
              "command    mute                 does mute\n"
              "command    throw                does throw\n"
              "test       check!    untested   a test\n"
              "string     name=     initial    a text\n"
              "uint32 ro  fixed=    0x1234     a number\n"
              "uint8      memory[]  0x0..0xff  some bytes\n"
              "uint8      list[]    5..104     some bytes\n");
}

TEST_F(ShellListing, ShowsHowATestEndedLast) {
    const auto last_of_check = [this] {
        Run("ls -l dev");
        const size_t begin = printed.find("check!    ") + 10;
        return printed.substr(begin, printed.find("  ", begin) - begin);
    };
    EXPECT_EQ(last_of_check(), "untested");
    Run("dev/check pass");
    EXPECT_EQ(last_of_check(), "passed");
    Run("dev/check fail");
    EXPECT_EQ(last_of_check(), "failed");
    Run("dev/check skip");
    EXPECT_EQ(last_of_check(), "skipped");
    Run("dev/check wait");
    EXPECT_EQ(last_of_check(), "aborted");
}

TEST_F(ShellListing, GoesOnBehindAValueThatCannotBeRead) {
    auto* value = new CCountedValue("value", VT_UINT8);
    m_root.AddChild(value, CDiagObj::NO_SORT);
    EXPECT_EQ(Run("ls -l"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("uint8 ro  value=  7  a counted value\n"));
    value->broken = true;
    EXPECT_EQ(Run("ls -l"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("uint8 ro  value=  ?  a counted value\n"));
    EXPECT_EQ(value->reads, 2U);
}

TEST_F(ShellListing, ReadsNothingThatLeavesATraceOrIsNotShown) {
    auto* traced = new CCountedValue("traced", VT_UINT8 | VF_TRACED);
    auto* plain = new CCountedValue("plain", VT_UINT8);
    m_root.AddChild(traced, CDiagObj::NO_SORT);
    m_root.AddChild(plain, CDiagObj::NO_SORT);
    m_memory->interrupted_at = 0;
    EXPECT_EQ(Run("tree -al"), EXIT_PASSED);
    EXPECT_EQ(traced->reads, 0U);
    EXPECT_EQ(plain->reads, 1U);
    EXPECT_FALSE(m_interrupt.IsPending());
    EXPECT_EQ(Run("ls"), EXIT_PASSED);
    EXPECT_EQ(Run("tree"), EXIT_PASSED);
    EXPECT_EQ(plain->reads, 1U);
}

TEST_F(ShellListing, ShortensLongValuesAndShowsControlCharacters) {
    EXPECT_EQ(Run("poke dev/name '" + std::string(100, 'x') + "'"), EXIT_PASSED);
    EXPECT_EQ(Run("ls -l dev"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("name=     " + std::string(29, 'x') + "...  a text\n"));
    EXPECT_EQ(Run("poke dev/name \"a\\nb\""), EXIT_PASSED);
    EXPECT_EQ(Run("ls -l dev"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("name=     a\\nb"));
}

TEST_F(ShellListing, ShowsTheTreeWithoutCommands) {
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

TEST_F(ShellListing, ShowsTheTreeWithCommandsWhenAsked) {
    EXPECT_EQ(Run("tree -a dev"), EXIT_PASSED);
    EXPECT_THAT(printed, StartsWith("/dev        a device\n"
                                    "  add       does add\n"));
    EXPECT_THAT(printed, Not(HasSubstr("first number")));
}

TEST_F(ShellListing, ShowsTheTreeAsDeepAsAsked) {
    EXPECT_EQ(Run("tree -d 1 /"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/        a test board\n"
              "  dev/   a device\n"
              "  gone/  a menu\n");
    EXPECT_EQ(Run("tree dev -d 0"), EXIT_PASSED);
    EXPECT_EQ(printed, "/dev  a device\n");
}

TEST_F(ShellListing, TakesOptionsTogether) {
    EXPECT_EQ(Run("tree -ald 1 dev"), EXIT_PASSED);
    EXPECT_THAT(printed, StartsWith("device     /dev                   a device\n"
                                    "command      add                  does add\n"));
    const std::string together = printed;
    EXPECT_EQ(Run("tree -l dev -a -d 1"), EXIT_PASSED);
    EXPECT_EQ(printed, together);
}

TEST_F(ShellListing, RefusesUnknownOptions) {
    EXPECT_EQ(Run("ls -x"), EXIT_USAGE);
    EXPECT_EQ(errors, "ls: there is no option -x\nusage: ls [-l] [NODE]\n");
    EXPECT_EQ(Run("ls -la"), EXIT_USAGE);
    EXPECT_EQ(Run("tree -d"), EXIT_USAGE);
    EXPECT_EQ(errors,
              "tree: -d needs a number of levels, as in -d 2\n"
              "usage: tree [-a] [-l] [-d LEVELS] [NODE]\n");
    EXPECT_EQ(Run("tree -d dev"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("tree: -d: \"dev\" is not a number; 0 to 99 fits"));
    EXPECT_EQ(Run("tree -d 100"), EXIT_USAGE);
}

TEST_F(ShellListing, TakesANameThatBeginsWithADashBehindAFolder) {
    m_root.AddChild(new CDiagMenu(TMENU, "-l", "an odd menu"), CDiagObj::NO_SORT);
    EXPECT_EQ(Run("tree ./-l"), EXIT_PASSED);
    EXPECT_EQ(printed, "/-l  an odd menu\n");
}

TEST_F(ShellListing, FindsNodesByNameAndDescription) {
    EXPECT_EQ(Run("find BYTES"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/dev/memory[]  some bytes\n"
              "/dev/list[]    some bytes\n");
    EXPECT_EQ(Run("find thro"), EXIT_PASSED);
    EXPECT_EQ(printed, "/dev/throw  does throw\n");
    EXPECT_EQ(Run("cd dev"), EXIT_PASSED);
    EXPECT_EQ(Run("find gone"), EXIT_PASSED);
    EXPECT_EQ(printed, "/gone/  a menu\n");
}

TEST_F(ShellListing, FindsBelowANodeOnly) {
    EXPECT_EQ(Run("find menu dev"), EXIT_PASSED);
    EXPECT_EQ(printed, "nothing below /dev has \"menu\" in its name or description\n");
    EXPECT_EQ(Run("find 'first number'"), EXIT_PASSED);
    EXPECT_EQ(printed, "nothing below / has \"first number\" in its name or description\n");
}

}  // namespace
