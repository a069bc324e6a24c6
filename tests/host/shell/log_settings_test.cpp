#include "host/shell/log_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/log_filter.h"
#include "host/usage_error.h"

namespace {

using testing::HasSubstr;

std::string ErrorOf(const std::vector<std::string>& words) {
    try {
        ParseLogSettings(words);
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "no error";
}

TEST(LogSettings, AreWrittenInOneWordOrInTwo) {
    const std::vector<CLogSetting> settings =
        ParseLogSettings({"sw-debug=15", "hw-debug", "off", "warning=0x3"});
    ASSERT_EQ(settings.size(), 3U);
    EXPECT_EQ(settings[0].type, LOG_LT_SW_DEBUG_BASE);
    EXPECT_EQ(settings[0].level, 15U);
    EXPECT_EQ(settings[1].type, LOG_LT_HW_DEBUG_BASE);
    EXPECT_EQ(settings[1].level, std::nullopt);
    EXPECT_EQ(settings[2].type, LOG_LT_WARN);
    EXPECT_EQ(settings[2].level, 3U);
}

TEST(LogSettings, AreForAllTypesAtOnceButPrint) {
    CLogFilter filter;
    Apply(ParseLogSettings({"all=off", "error=15"}), filter);
    for (unsigned int type = LOG_LT_FIRST; type <= LOG_LT_LAST; ++type) {
        const bool shown = type == LOG_LT_ERR_SW || type == LOG_LT_PRINT;
        EXPECT_EQ(filter.Shows(type << 4), shown) << type;
    }
}

TEST(LogSettings, NameWhatFitsWhenTheyDoNot) {
    EXPECT_EQ(ErrorOf({"debug=1"}),
              "\"debug\" is no type of log texts; there are test-error, system-error, error, "
              "warning, system, info, progress, result, hw-debug, sw-debug, and all");
    EXPECT_EQ(ErrorOf({"a\x1b[m", "1"}).substr(0, 13), "\"a\\x1b[m\" is ");
    EXPECT_EQ(ErrorOf({"info=16"}), "16 is out of range, a level from 0 to 15 or off fits");
    EXPECT_THAT(ErrorOf({"info", "loud"}), HasSubstr("a level from 0 to 15 or off fits"));
    EXPECT_THAT(ErrorOf({"info="}), HasSubstr("a level from 0 to 15 or off fits"));
    EXPECT_THAT(ErrorOf({"=3"}), HasSubstr("\"\" is no type"));
    EXPECT_EQ(ErrorOf({"info"}), "info: the level is missing, 0 to 15, or off");
    EXPECT_EQ(ErrorOf({"all"}), "all: the level is missing, 0 to 15, or off");
    EXPECT_EQ(ErrorOf({"print=off"}), "print: what commands print always shows");
}

}  // namespace
