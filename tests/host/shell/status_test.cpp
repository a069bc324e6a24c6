#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"

namespace {

using Status = ShellTest;
using testing::ContainsRegex;
using testing::HasSubstr;

constexpr const char* TIME = "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}";

TEST_F(Status, ShowsTestsThatNeverRan) {
    EXPECT_EQ(Run("status"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "TEST        LAST      PASSED  FAILED  ABORTED  SKIPPED  ENDED\n"
              "/dev/check  untested\n"
              "1 test: 1 untested\n");
}

TEST_F(Status, CountsHowTestsEndedAndWhen) {
    for (const char* how : {"pass", "pass", "fail", "refuse", "skip"}) {
        Run(std::string("/dev/check ") + how);
    }
    EXPECT_EQ(Run("status /dev"), EXIT_PASSED);
    EXPECT_THAT(printed, ContainsRegex(std::string("\n/dev/check  skipped +2 +2 +0 +1 +") + TIME +
                                       "\n1 test: 1 skipped\n$"));
    Run("/dev/check wait");
    m_interrupt.Clear();
    Run("status");
    EXPECT_THAT(printed, ContainsRegex("\n/dev/check  aborted +2 +2 +1 +1  "));
    Run("/dev/check fail");
    Run("status");
    EXPECT_THAT(printed, ContainsRegex("\n/dev/check  failed +2 +3 +1 +1  "));
    Run("/dev/check pass");
    Run("status");
    EXPECT_THAT(printed, ContainsRegex("\n/dev/check  passed +3 +3 +1 +1  "));
}

TEST_F(Status, CountsNoTestThatWasRefused) {
    EXPECT_EQ(Run("/dev/check"), EXIT_USAGE);
    Run("status");
    EXPECT_THAT(printed, HasSubstr("1 test: 1 untested"));
}

TEST_F(Status, CountsTestsThatOthersRan) {
    Run("repeat 3 /dev/check pass");
    Run("/dev/check pass &");
    Run("wait");
    Run("status");
    EXPECT_THAT(printed, ContainsRegex("\n/dev/check  passed +4 +0 +0 +0  "));
}

TEST_F(Status, ForgetsWhenToldTo) {
    Run("/dev/check pass");
    EXPECT_EQ(Run("status --reset"), EXIT_PASSED);
    EXPECT_EQ(printed, "");
    Run("status");
    EXPECT_THAT(printed, HasSubstr("1 test: 1 untested"));
    EXPECT_EQ(Run("status --reset /dev"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("--reset forgets all results"));
}

TEST_F(Status, SaysWhereThereIsNoTest) {
    EXPECT_EQ(Run("status /dev/add"), EXIT_PASSED);
    EXPECT_EQ(printed, "there is no test in /dev/add\n");
}

}  // namespace
