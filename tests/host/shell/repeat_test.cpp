#include <gmock/gmock.h>

#include "tests/host/shell/shell_tree.h"

namespace {

using Repeat = ShellTest;
using testing::ContainsRegex;
using testing::HasSubstr;

TEST_F(Repeat, RunsACommandAsOftenAsToldAndTellsHowLongItTook) {
    EXPECT_EQ(Run("repeat 3 /dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 3U);
    EXPECT_THAT(printed,
                ContainsRegex("\nrepeat: 3 runs, 0 failed; min [0-9.]+ [um]?s, mean [0-9.]+ "
                              "[um]?s, max [0-9.]+ [um]?s\n$"));
}

TEST_F(Repeat, GoesOnAfterFailuresAndFailsInTheEnd) {
    EXPECT_EQ(Run("repeat 2 /dev/fail"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 2U);
    EXPECT_THAT(printed, HasSubstr("repeat: 2 runs, 2 failed; min "));
}

TEST_F(Repeat, EndsAtTheFirstFailureWhenToldTo) {
    EXPECT_EQ(Run("repeat until-fail /dev/fail"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 1U);
    EXPECT_THAT(printed, HasSubstr("repeat: 1 run, 1 failed; min "));
}

TEST_F(Repeat, RunsALineThatIsQuoted) {
    EXPECT_EQ(Run("repeat 2 '/dev/add 1; /dev/add 2'"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 4U);
    EXPECT_THAT(printed, HasSubstr("repeat: 2 runs, 0 failed"));
}

TEST_F(Repeat, KeepsTheWordsOfItsCommandAsTheyAre) {
    EXPECT_EQ(Run("repeat 1 /dev/check 'a b;c'"), EXIT_FAILED);
    EXPECT_EQ(m_calls, 1U);
}

TEST_F(Repeat, EndsAtCtrlCWithWhatItHas) {
    EXPECT_EQ(Run("repeat 5 /dev/check wait"), EXIT_ABORTED);
    EXPECT_EQ(m_calls, 1U);
    EXPECT_THAT(printed, HasSubstr("repeat: 1 run, 0 failed, 1 aborted; min "));
}

TEST_F(Repeat, EndsAtOnceWhenItsCommandIsRefused) {
    EXPECT_EQ(Run("repeat 5 /dev/add", "file:7"), EXIT_USAGE);
    EXPECT_THAT(errors, testing::StartsWith("file:7: /dev/add: missing argument a"));
    EXPECT_EQ(printed, "");
}

TEST_F(Repeat, RepeatsBuiltInsAndItself) {
    EXPECT_EQ(Run("repeat 2 repeat 3 /dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 6U);
}

TEST_F(Repeat, NestsOnlySoDeep) {
    std::string line;
    for (int i = 0; i < 16; ++i) {
        line += "repeat 1 ";
    }
    EXPECT_EQ(Run(line + "/dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(Run(line + "repeat 1 /dev/add 1"), EXIT_USAGE);
    EXPECT_EQ(errors, "repeat: source and repeat nest only 16 deep\n");
    EXPECT_EQ(m_calls, 1U);
}

TEST_F(Repeat, NamesWhatItCounts) {
    EXPECT_EQ(Run("repeat often /dev/add 1"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("until-fail or 0 to 4294967295"));
    EXPECT_EQ(Run("repeat 3"), EXIT_USAGE);
    EXPECT_THAT(errors, HasSubstr("usage: repeat COUNT|until-fail COMMAND [ARGUMENT...]"));
    EXPECT_EQ(Run("repeat 0 /dev/add 1"), EXIT_PASSED);
    EXPECT_EQ(m_calls, 0U);
    EXPECT_EQ(printed, "repeat: 0 runs\n");
}

}  // namespace
