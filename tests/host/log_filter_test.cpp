#include "host/log_filter.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "host/log_types.h"

namespace {

TEST(LogFilter, ShowsAllButTheDetailAtTheStart) {
    const CLogFilter filter;
    for (const CLogTypeName& known : LOG_TYPE_NAMES) {
        const bool detailed = known.type == LOG_LT_PROGRESS || known.type == LOG_LT_HW_DEBUG_BASE ||
                              known.type == LOG_LT_SW_DEBUG_BASE;
        EXPECT_TRUE(filter.Shows(LogWord(known.type, 0))) << known.name;
        EXPECT_EQ(filter.Shows(LogWord(known.type, 1)), !detailed) << known.name;
        EXPECT_EQ(filter.LevelOf(known.type), detailed ? 0U : 15U) << known.name;
    }
}

TEST(LogFilter, ShowsATypeUpToItsLevel) {
    CLogFilter filter;
    filter.Set(LOG_LT_SW_DEBUG_BASE, 5);
    EXPECT_TRUE(filter.Shows(LW_SW_DUMP));
    EXPECT_FALSE(filter.Shows(LogWord(LOG_LT_SW_DEBUG_BASE, 6)));
    EXPECT_FALSE(filter.Shows(LW_HW_TRACE));
    filter.Set(LOG_LT_SW_DEBUG_BASE, 15);
    EXPECT_TRUE(filter.Shows(LogWord(LOG_LT_SW_DEBUG_BASE, 15)));
}

TEST(LogFilter, HidesATypeAsAWhole) {
    CLogFilter filter;
    filter.Set(LOG_LT_WARN, std::nullopt);
    EXPECT_FALSE(filter.Shows(LW_WARN));
    EXPECT_EQ(filter.LevelOf(LOG_LT_WARN), std::nullopt);
    EXPECT_TRUE(filter.Shows(LW_ERR_SW));
}

TEST(LogFilter, NeverHidesWhatCommandsPrint) {
    CLogFilter filter;
    EXPECT_THROW(filter.Set(LOG_LT_PRINT, std::nullopt), std::invalid_argument);
    EXPECT_THROW(filter.Set(LOG_LT_PRINT, 3), std::invalid_argument);
    EXPECT_TRUE(filter.Shows(LogWord(LOG_LT_PRINT, 15)));
}

TEST(LogFilter, RefusesALevelThatNoTextHas) {
    CLogFilter filter;
    EXPECT_THROW(filter.Set(LOG_LT_INFO, 16), std::invalid_argument);
    EXPECT_EQ(filter.LevelOf(LOG_LT_INFO), 15U);
}

TEST(LogFilter, GoesBackToItsDefaults) {
    CLogFilter filter;
    filter.Set(LOG_LT_HW_DEBUG_BASE, 10);
    filter.KeepAsDefaults();
    filter.Set(LOG_LT_HW_DEBUG_BASE, std::nullopt);
    filter.Set(LOG_LT_INFO, std::nullopt);
    filter.RestoreDefaults();
    EXPECT_EQ(filter.LevelOf(LOG_LT_HW_DEBUG_BASE), 10U);
    EXPECT_EQ(filter.LevelOf(LOG_LT_INFO), 15U);
}

TEST(LogTypes, HaveANameEach) {
    for (unsigned int type = LOG_LT_FIRST; type <= LOG_LT_LAST; ++type) {
        const std::string name = LogTypeName(static_cast<ELogTypes>(type));
        EXPECT_NE(name, "other") << type;
        EXPECT_EQ(FindLogType(name), static_cast<ELogTypes>(type)) << name;
    }
    EXPECT_STREQ(LogTypeName(LogTypeOf(0xF0)), "other");
    EXPECT_EQ(FindLogType("warnings"), std::nullopt);
    EXPECT_EQ(FindLogType(""), std::nullopt);
}

}  // namespace
