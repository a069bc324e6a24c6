#include "host/shell/input/history_search.h"

#include <gtest/gtest.h>

#include "host/shell/input/history.h"

namespace {

class HistorySearch : public testing::Test {
  protected:
    HistorySearch() {
        for (const char* line : {"peek a", "poke a 1", "ls", "peek b"}) {
            m_history.Enter(line);
        }
    }
    // With the cursor at the end, as the walk leaves it.
    std::optional<std::string> Older(const std::string& shown) {
        return m_search.Older(shown, shown.size());
    }
    std::optional<std::string> Newer(const std::string& shown) {
        return m_search.Newer(shown, shown.size());
    }

    CHistory m_history{""};
    CHistorySearch m_search{m_history};
};

TEST_F(HistorySearch, WalksThroughAllLinesFromAnEmptyOne) {
    EXPECT_EQ(Older(""), "peek b");
    EXPECT_EQ(Older("peek b"), "ls");
    EXPECT_EQ(Older("ls"), "poke a 1");
    EXPECT_EQ(Older("poke a 1"), "peek a");
    EXPECT_EQ(Older("peek a"), std::nullopt);
    EXPECT_EQ(Newer("peek a"), "poke a 1");
}

TEST_F(HistorySearch, FindsWhatBeginsAsTyped) {
    EXPECT_EQ(Older("p"), "peek b");
    EXPECT_EQ(Older("peek b"), "poke a 1");
    EXPECT_EQ(Older("poke a 1"), "peek a");
    EXPECT_EQ(Older("peek a"), std::nullopt);
}

TEST_F(HistorySearch, LooksOnlyAtWhatStandsBeforeTheCursor) {
    EXPECT_EQ(m_search.Older("poxx", 2), "poke a 1");
}

TEST_F(HistorySearch, ComesBackToWhatWasTyped) {
    EXPECT_EQ(Older("pe"), "peek b");
    EXPECT_EQ(Older("peek b"), "peek a");
    EXPECT_EQ(Newer("peek a"), "peek b");
    EXPECT_EQ(Newer("peek b"), "pe");
    EXPECT_EQ(Newer("pe"), std::nullopt);
    EXPECT_EQ(Older("pe"), "peek b");
}

TEST_F(HistorySearch, BeginsAnewWhereTheLineWasChanged) {
    EXPECT_EQ(Older("p"), "peek b");
    EXPECT_EQ(Older("peek"), "peek b");
    EXPECT_EQ(Newer("l"), std::nullopt);
    EXPECT_EQ(Older("l"), "ls");
}

TEST_F(HistorySearch, ShowsRepeatedLinesOnce) {
    m_history.Enter("ls");
    m_history.Enter("peek b");
    EXPECT_EQ(Older("pe"), "peek b");
    EXPECT_EQ(Older("peek b"), "peek a");
}

TEST_F(HistorySearch, SeesNewLinesAfterAReset) {
    EXPECT_EQ(Older(""), "peek b");
    m_search.Reset();
    m_history.Enter("pwd");
    EXPECT_EQ(Older(""), "pwd");
}

TEST_F(HistorySearch, FindsNothingInAnEmptyHistory) {
    const CHistory none("");
    CHistorySearch search(none);
    EXPECT_EQ(search.Older("", 0), std::nullopt);
    EXPECT_EQ(search.Newer("", 0), std::nullopt);
}

}  // namespace
