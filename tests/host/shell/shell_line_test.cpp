// Several commands on one line.
#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"

namespace {

using ShellLine = ShellTest;
using testing::HasSubstr;

TEST_F(ShellLine, GoesOnBehindASemicolonWhateverCameBefore) {
    EXPECT_EQ(Run("/dev/fail; /dev/add 1; nope; /dev/add 2"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 3U);
    EXPECT_THAT(printed, HasSubstr("sum = 2"));
    EXPECT_THAT(errors, HasSubstr("/dev/fail: failed"));
    EXPECT_THAT(errors, HasSubstr("nope"));
}

TEST_F(ShellLine, GoesOnBehindTwoAmpersandsOnlyAfterSuccess) {
    EXPECT_EQ(Run("/dev/add 1 && /dev/add 2"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_EQ(Run("/dev/fail && /dev/add 1 && /dev/add 2"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 3U);
}

TEST_F(ShellLine, GoesOnBehindTheNextSemicolonAfterAFailure) {
    EXPECT_EQ(Run("/dev/fail && /dev/add 1; /dev/add 2"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_THAT(printed, HasSubstr("sum = 2\n"));
    EXPECT_THAT(printed, testing::Not(HasSubstr("sum = 1\n")));
}

TEST_F(ShellLine, CarriesOutEachCommandBeforeItLooksAtTheNext) {
    EXPECT_EQ(Run("cd dev; add 1 && cd /"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 1U);
    EXPECT_EQ(Run("dev/add 1"), EXIT_PASSED);
}

TEST_F(ShellLine, DoesNothingOfALineThatCannotBeUnderstood) {
    EXPECT_EQ(Run("/dev/add 1; /dev/add 'x", "file:3"), EXIT_USAGE);
    EXPECT_EQ(errors, "file:3: the quote ' at column 22 is never closed\n");
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellLine, EndsWhenTheShellIsLeft) {
    EXPECT_EQ(Run("quit; /dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 0U);
}

TEST_F(ShellLine, EndsAtCtrlC) {
    EXPECT_EQ(Run("/dev/check wait; /dev/add 1"), EXIT_ABORTED);
    EXPECT_EQ(m_calls, 1U);
}

}  // namespace
