#include "host/shell/run/progress_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "framework/diag_test.h"
#include "host/shell/run/request.h"
#include "host/terminal.h"
#include "tests/host/shell/text_file.h"

namespace {

using testing::HasSubstr;

constexpr unsigned int COLUMNS = 80;

// Runs `work` while the test works, with its progress at hand.
class CWorkingTest : public CDiagTest {
  public:
    CWorkingTest() : CDiagTest("work", "") {}
    ETestStatus TestRun(COutMsg&) override {
        work();
        return DS_PASSED;
    }
    void Set(uint64_t done, uint64_t total) {
        m_progress_done = done;
        m_progress_total = total;
    }
    std::function<void()> work = [] {};
};

class ProgressLine : public testing::Test {
  protected:
    std::string Written() { return m_file.Written(); }
    void WhileItWorks(const std::function<void()>& work) {
        m_test.work = work;
        const CReply reply(m_test, COutMsg(MSG_START, m_test.GetId()));
        ASSERT_EQ(reply.Code(), MSG_SUCCESS);
    }

    CTextFile m_file;
    CTerminal m_terminal{m_file.Get(), m_file.Get()};
    CWorkingTest m_test;
};

TEST_F(ProgressLine, ShowsABarOnAScreen) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(1000);
        m_test.Set(250, 1000);
        line.Update(1500);
        EXPECT_EQ(Written(), "[#####---------------] work: 25%, 250 of 1000, 500/s");
        m_test.Set(500, 1000);
        line.Update(2000);
        EXPECT_EQ(Written(), "\r\x1b[K[##########----------] work: 50%, 500 of 1000, 500/s");
    });
    EXPECT_EQ(Written(), "\r\x1b[K");
}

TEST_F(ProgressLine, ShowsNothingOfATestThatEndsAtOnce) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        m_test.Set(1, 2);
        line.Update(0);
        line.Update(CProgressLine::BAR_AFTER_MS - 1);
    });
    EXPECT_EQ(Written(), "");
}

TEST_F(ProgressLine, ShowsNothingOfATestThatWaitsForItsDevice) {
    CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
    line.Update(0);
    line.Update(100000);
    EXPECT_EQ(Written(), "");
}

TEST_F(ProgressLine, ChangesTheBarOnlySoOften) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        line.Update(600);
        Written();
        m_test.Set(1, 2);
        line.Update(600 + CProgressLine::BAR_EVERY_MS - 1);
        EXPECT_EQ(Written(), "");
        line.Update(600 + CProgressLine::BAR_EVERY_MS);
        EXPECT_THAT(Written(), HasSubstr("work: 50%"));
    });
}

TEST_F(ProgressLine, ShowsThePresentRate) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        m_test.Set(1000, 10000);
        line.Update(1000);
        EXPECT_THAT(Written(), HasSubstr(" 1000/s"));
        m_test.Set(1010, 10000);
        line.Update(2000);
        EXPECT_THAT(Written(), HasSubstr(" 10/s"));
    });
}

TEST_F(ProgressLine, TakesATestThatGoesBack) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        m_test.Set(400, 400);
        line.Update(1000);
        m_test.Set(300, 400);
        line.Update(2000);
        EXPECT_THAT(Written(), HasSubstr("work: 75%, 300 of 400, 400/s"));
        m_test.Set(320, 400);
        line.Update(3000);
        EXPECT_THAT(Written(), HasSubstr("work: 80%, 320 of 400, 20/s"));
    });
}

TEST_F(ProgressLine, DoesWithoutATotal) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        line.Update(3000);
        EXPECT_EQ(Written(), "work: running, 3 s");
        m_test.Set(70, 0);
        line.Update(4000);
        EXPECT_THAT(Written(), HasSubstr("work: 70, 70/s"));
    });
}

TEST_F(ProgressLine, TakesATestThatDoesMoreThanItAnnounced) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        m_test.Set(30, 20);
        line.Update(1000);
        EXPECT_EQ(Written(), "[####################] work: 100%, 30 of 20, 30/s");
    });
}

TEST_F(ProgressLine, CountsBeyond32Bits) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return COLUMNS; });
        line.Update(0);
        m_test.Set(~uint64_t{0} / 2, ~uint64_t{0} - 1);
        line.Update(600);
        EXPECT_THAT(Written(), HasSubstr("work: 50%"));
    });
}

TEST_F(ProgressLine, FitsANarrowScreen) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return 10; });
        line.Update(0);
        m_test.Set(1, 2);
        line.Update(1000);
        EXPECT_EQ(Written(), "[########");
    });
}

TEST_F(ProgressLine, IsALineEveryFewSecondsWithoutAScreen) {
    WhileItWorks([this] {
        CProgressLine line(m_terminal, m_test, [] { return 0U; });
        m_test.Set(0, 100);
        line.Update(0);
        m_test.Set(40, 100);
        line.Update(CProgressLine::LINE_EVERY_MS - 1000);
        EXPECT_EQ(Written(), "");
        m_test.Set(50, 100);
        line.Update(CProgressLine::LINE_EVERY_MS);
        EXPECT_EQ(Written(), "work: 50%, 50 of 100, 10/s\n");
        line.Update(2 * CProgressLine::LINE_EVERY_MS - 1);
        EXPECT_EQ(Written(), "");
        line.Update(2 * CProgressLine::LINE_EVERY_MS);
        EXPECT_EQ(Written(), "work: 50%, 50 of 100, 0/s\n");
    });
    EXPECT_EQ(Written(), "");
}

}  // namespace
