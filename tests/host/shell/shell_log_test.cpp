#include <gtest/gtest.h>

#include "framework/diag_functions.h"
#include "tests/host/shell/shell_tree.h"

namespace {

using ShellLog = ShellTest;

TEST_F(ShellLog, ShowsWhatShowsOfEachType) {
    m_log_filter.Set(LOG_LT_ERR_SW, std::nullopt);
    EXPECT_EQ(Run("log"), EXIT_PASSED);
    EXPECT_EQ(printed,
              "test-error    shown\n"
              "system-error  shown\n"
              "error         off\n"
              "warning       shown\n"
              "system        shown\n"
              "info          shown\n"
              "progress      up to level 0\n"
              "result        shown\n"
              "hw-debug      up to level 0\n"
              "sw-debug      up to level 0\n");
}

TEST_F(ShellLog, ChoosesAtOnceWhatShows) {
    EXPECT_EQ(Run("log sw-debug=1 info off"), EXIT_PASSED);
    EXPECT_EQ(printed + errors, "");
    EXPECT_TRUE(m_log_filter.Shows(LW_SW_TRACE));
    EXPECT_FALSE(m_log_filter.Shows(LW_SW_DUMP));
    EXPECT_FALSE(m_log_filter.Shows(LW_INFO));
    EXPECT_EQ(Run("log all 15"), EXIT_PASSED);
    EXPECT_TRUE(m_log_filter.Shows(LW_HW_TRACE));
    EXPECT_TRUE(m_log_filter.Shows(LW_INFO));
}

TEST_F(ShellLog, ChecksEverythingBeforeAnythingIsSet) {
    for (const char* line :
         {"log info=off nope=1", "log info=off warning=16", "log info off warning",
          "log info=off print=off", "log default info=off", "log info=off default"}) {
        EXPECT_EQ(Run(line), EXIT_USAGE) << line;
        EXPECT_NE(errors, "") << line;
        EXPECT_TRUE(m_log_filter.Shows(LW_INFO)) << line;
    }
}

TEST_F(ShellLog, GoesBackToWhatTheStartChose) {
    m_log_filter.Set(LOG_LT_HW_DEBUG_BASE, 3);
    m_log_filter.KeepAsDefaults();
    EXPECT_EQ(Run("log all=off; log default"), EXIT_PASSED);
    EXPECT_EQ(m_log_filter.LevelOf(LOG_LT_HW_DEBUG_BASE), 3U);
    EXPECT_EQ(m_log_filter.LevelOf(LOG_LT_WARN), 15U);
    EXPECT_EQ(Run("log default 3"), EXIT_USAGE);
    EXPECT_EQ(errors, "log default: brings all types back at once and takes no argument\n");
}

}  // namespace
