#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"

namespace {

using ShellCommand = ShellTest;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(ShellCommand, RunsByAbsoluteAndRelativePath) {
    EXPECT_EQ(Run("/dev/add 1 2"), EXIT_PASSED);
    EXPECT_EQ(printed, "adding 1 and 2\nsum = 3\nnote = done\n");
    EXPECT_EQ(Run("dev/add 0x10"), EXIT_PASSED);
    EXPECT_EQ(printed, "adding 16 and 0\nsum = 16\nnote = done\n");
    EXPECT_EQ(Run("cd dev"), EXIT_PASSED);
    EXPECT_EQ(Run("add 65535 255"), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("sum = 65790"));
    EXPECT_EQ(Run("../dev/./add 1"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 4U);
}

TEST_F(ShellCommand, DoesNothingForAnEmptyLineOrAComment) {
    EXPECT_EQ(Run(""), EXIT_PASSED);
    EXPECT_EQ(Run("   # nothing"), EXIT_PASSED);
    EXPECT_EQ(printed + errors, "");
}

TEST_F(ShellCommand, RefusesAMissingArgumentBeforeAnythingIsSent) {
    EXPECT_EQ(Run("/dev/add"), EXIT_USAGE);
    EXPECT_EQ(errors,
              "/dev/add: missing argument a (first number, 0 to 65535)\nusage: add a [b]\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellCommand, RefusesSurplusArgumentsBeforeAnythingIsSent) {
    EXPECT_EQ(Run("/dev/add 1 2 3"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("/dev/add: surplus argument \"3\": 2 at the most\n"));
    EXPECT_EQ(Run("/dev/fail x"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("/dev/fail: surplus argument \"x\": there are none\n"));
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellCommand, NamesTheArgumentThatDoesNotFit) {
    EXPECT_EQ(Run("/dev/add 1 256"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("/dev/add: argument b: 256 is out of range, 0 to 255 fits\n"));
    EXPECT_EQ(Run("/dev/add one"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("/dev/add: argument a: \"one\" is not a number; 0 to 65535 "
                                   "fits (decimal, 0x, 0o or 0b)\n"));
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellCommand, RefusesArgumentsThatNoMessageHolds) {
    EXPECT_EQ(Run("/dev/check " + std::string(1022, 'x')), EXIT_FAILED);
    EXPECT_EQ(m_calls, 1U);
    EXPECT_EQ(Run("/dev/check " + std::string(1023, 'x')), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("argument how: too long, all arguments together must fit 1024"));
    EXPECT_EQ(m_calls, 1U);
}

TEST_F(ShellCommand, ReportsAFailedCommandOnALineOfItsOwn) {
    EXPECT_EQ(Run("/dev/fail", "script:7"), EXIT_FAILED);
    EXPECT_EQ(printed, "half a line\n");
    EXPECT_EQ(errors, "script:7: /dev/fail: failed (ERR_FAIL)\n");
}

TEST_F(ShellCommand, TakesNoAnswerForAFailure) {
    EXPECT_EQ(Run("/dev/mute"), EXIT_FAILED);
    EXPECT_EQ(errors, "/dev/mute: failed (no answer)\n");
}

TEST_F(ShellCommand, ReportsWhatACommandThrew) {
    EXPECT_EQ(Run("/dev/throw"), EXIT_FAILED);
    EXPECT_EQ(printed, "out of order\n");
    EXPECT_EQ(errors, "/dev/throw: failed (ERR_FAIL)\n");
}

TEST_F(ShellCommand, RunsTestsAndReportsTheirResult) {
    EXPECT_EQ(Run("/dev/check pass"), EXIT_PASSED);
    EXPECT_EQ(printed, "check: passed\n");
    EXPECT_EQ(Run("/dev/check fail"), EXIT_FAILED);
    EXPECT_EQ(errors, "/dev/check: failed (ERR_FAIL)\n");
    EXPECT_EQ(Run("/dev/check refuse"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
}

TEST_F(ShellCommand, ASkippedTestIsNoFailure) {
    EXPECT_EQ(Run("/dev/check skip"), EXIT_PASSED);
    EXPECT_EQ(printed, "check: skipped\n");
    EXPECT_EQ(errors, "");
}

TEST_F(ShellCommand, PrintsTheOutputsOfAFailureToo) {
    EXPECT_EQ(Run("/dev/count"), EXIT_FAILED);
    EXPECT_EQ(printed, "passed = 3 (failed)\n");
    EXPECT_EQ(errors, "/dev/count: failed (ERR_FAIL)\n");
}

TEST_F(ShellCommand, DoesNotMissAnOutputThatWasLeftOut) {
    EXPECT_EQ(Run("/dev/terse"), EXIT_PASSED);
    EXPECT_EQ(printed + errors, "");
}

TEST_F(ShellCommand, StopsATestAtCtrlC) {
    EXPECT_EQ(Run("/dev/check wait"), EXIT_ABORTED);
    EXPECT_EQ(errors, "/dev/check: aborted (ERR_ABORTED)\n");
    EXPECT_TRUE(m_interrupt.IsPending());
    // Until it is cleared, what begins is stopped too.
    EXPECT_EQ(Run("/dev/check pass"), EXIT_ABORTED);
    m_interrupt.Clear();
    EXPECT_EQ(Run("/dev/check pass"), EXIT_PASSED);
}

TEST_F(ShellCommand, SaysHowFarAnUnknownPathGoes) {
    EXPECT_EQ(Run("nope"), EXIT_USAGE);
    EXPECT_EQ(errors, "nope: there is no \"nope\" in /; try ls or help\n");
    EXPECT_EQ(Run("/dev/nope/more 1"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/nope/more: there is no \"nope\" in /dev; try ls /dev\n");
    EXPECT_EQ(Run("nope/more"), EXIT_USAGE);
    EXPECT_EQ(errors, "nope/more: there is no \"nope\" in /; try ls or help\n");
    EXPECT_EQ(Run("dev/../dev//add/b/c"), EXIT_USAGE);
    EXPECT_EQ(errors,
              "dev/../dev//add/b/c: /dev/add/b is a parameter; there is nothing below it\n");
    EXPECT_EQ(Run("''"), EXIT_USAGE);
    EXPECT_EQ(errors, "an empty word names no node\n");
    EXPECT_EQ(Run("'\\\x1b'"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("control character \\x1b"));
}

TEST_F(ShellCommand, SaysWhatToDoWithANodeThatDoesNotRun) {
    EXPECT_EQ(Run("dev"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev is a device; cd /dev goes there, ls /dev lists it\n");
    EXPECT_EQ(Run("dev/name"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/name is a value; peek /dev/name reads it\n");
    EXPECT_EQ(Run("dev/add/a"), EXIT_USAGE);
    EXPECT_EQ(errors, "/dev/add/a is a parameter; help /dev/add/a explains it\n");
}

TEST_F(ShellCommand, ErrorsBeginWithTheirOrigin) {
    EXPECT_EQ(Run("nope", "file.txt:12"), EXIT_USAGE);
    EXPECT_THAT(errors, StartsWith("file.txt:12: nope: "));
}

}  // namespace
