#include "host/log_flood.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/support/fake_clock.h"

namespace {

class CKeepingSink : public ILogSink {
  public:
    bool Takes(unsigned int logword) const override { return LogTypeOf(logword) != LOG_LT_INFO; }
    void Write(const CLogRecord& record) override { texts.push_back(record.text); }
    std::vector<std::string> texts;
};

constexpr unsigned int SHOWN = CLogFlood::LINES_PER_SECOND;
constexpr char TOO_MANY[] =
    "too many errors: from here on they are only counted; a log file gets them all\n";

class LogFlood : public testing::Test {
  protected:
    void Fail(unsigned int times, unsigned int logword = LW_ERR_TEST) {
        for (unsigned int i = 0; i < times; ++i) {
            m_flood.Write({logword, nullptr, "bad " + std::to_string(++m_failures) + "\n"});
        }
    }
    // What arrived since the last call.
    std::vector<std::string> Texts() { return std::exchange(m_sink.texts, {}); }

    CFakeClock m_clock;
    CKeepingSink m_sink;
    CLogFlood m_flood{m_sink};
    unsigned int m_failures = 0;
};

TEST_F(LogFlood, LeavesNothingOutInTheForeground) {
    Fail(10'000);
    EXPECT_EQ(Texts().size(), 10'000U);
}

TEST_F(LogFlood, LeavesNothingOutOfFewErrors) {
    const CLogFlood::CScope job;
    for (unsigned int second = 0; second < 100; ++second) {
        Fail(SHOWN);
        m_clock.Advance(1000);
    }
    EXPECT_EQ(Texts().size(), 100U * SHOWN);
}

TEST_F(LogFlood, ShowsTheFirstAndCountsTheOthers) {
    {
        const CLogFlood::CScope job;
        Fail(5000);
        const std::vector<std::string> texts = Texts();
        ASSERT_EQ(texts.size(), SHOWN + 1U);
        EXPECT_EQ(texts.front(), "bad 1\n");
        EXPECT_EQ(texts.back(), TOO_MANY);
        m_clock.Advance(CLogFlood::TELL_EVERY_MS);
        Fail(1);
        EXPECT_EQ(Texts(), std::vector<std::string>{
                               "4991 errors and warnings left out, the last: bad 5001\n"});
        Fail(7);
        EXPECT_TRUE(Texts().empty());
    }
    EXPECT_EQ(Texts(),
              std::vector<std::string>{"7 errors and warnings left out, the last: bad 5008\n"});
}

TEST_F(LogFlood, CountsEveryRecordOnce) {
    unsigned int told = 0;
    {
        const CLogFlood::CScope job;
        for (unsigned int i = 0; i < 5000; ++i) {
            Fail(i % 7);
            m_clock.Advance(i % 90);
        }
    }
    for (const std::string& text : Texts()) {
        if (text.starts_with("bad")) {
            ++told;
        } else if (text != TOO_MANY) {
            told += static_cast<unsigned int>(std::stoul(text));
        }
    }
    EXPECT_EQ(told, m_failures);
}

TEST_F(LogFlood, ShowsAgainWhenFewErrorsCome) {
    const CLogFlood::CScope job;
    Fail(100);
    Texts();
    m_clock.Advance(60'000);
    Fail(2);
    EXPECT_EQ(Texts(),
              (std::vector<std::string>{"90 errors and warnings left out, the last: bad 100\n",
                                        "bad 101\n", "bad 102\n"}));
}

TEST_F(LogFlood, LeavesOutErrorsAndWarningsOnly) {
    const CLogFlood::CScope job;
    Fail(100, LW_PRINT);
    Fail(100, LW_RESULT);
    EXPECT_EQ(Texts().size(), 200U);
    Fail(100, LW_INFO);
    EXPECT_TRUE(Texts().empty());
    Fail(SHOWN, LW_WARN);
    Fail(100, LW_ERR_SW);
    EXPECT_EQ(Texts().size(), SHOWN + 1U);
}

}  // namespace
