#include "host/shell/run/progress_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <functional>

#include "framework/diag_test.h"
#include "framework/long_work.h"
#include "host/shell/run/request.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr unsigned int COLUMNS = 120;
constexpr uint64_t LOOK_MS = 100;

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
    void WhileItWorks(const std::function<void()>& work) {
        m_test.work = work;
        const CReply reply(m_test, COutMsg(MSG_START, m_test.GetId()));
        ASSERT_EQ(reply.Code(), MSG_SUCCESS);
    }
    // Looks as often as the watch does, until `to`.
    void LookUntil(uint64_t to, CProgressLine& line) {
        for (; m_now < to; m_now += LOOK_MS) {
            line.Look(m_now);
        }
        m_now = to;
        line.Look(m_now);
    }
    // Does `units` more in each second, evenly, until `to`.
    void WorkUntil(uint64_t to, uint64_t units, uint64_t total) {
        while (m_now < to) {
            m_now += LOOK_MS;
            m_done += units * LOOK_MS / 1000;
            m_test.Set(m_done, total);
            m_line.Look(m_now);
        }
    }
    std::string Row() const { return m_line.Row(COLUMNS); }

    CWorkingTest m_test;
    CRunNote m_note;
    CProgressLine m_line{"work", &m_test, m_note};
    CProgressLine m_other{"read", nullptr, m_note};  // of a command
    uint64_t m_now = 0;
    uint64_t m_done = 0;
};

TEST_F(ProgressLine, IsABarWithRateAndTimeLeft) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(4000, 100, 1000);
        EXPECT_EQ(Row(), "[########------------] work: 40%, 400 of 1000, 100/s, 0:06 left");
        WorkUntil(9500, 100, 1000);
        EXPECT_EQ(Row(), "[###################-] work: 95%, 950 of 1000, 100/s, 0:01 left");
        WorkUntil(10000, 100, 1000);
        EXPECT_EQ(Row(), "[####################] work: 100%, 1000 of 1000, 100/s");
    });
}

TEST_F(ProgressLine, HasHoursLeft) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(10000, 10, 100000);
        EXPECT_THAT(Row(), HasSubstr(", 2:46:30 left"));
    });
}

TEST_F(ProgressLine, SaysNothingOfTheTimeLeftInTheFirstSecond) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(900, 1000, 10000);
        EXPECT_EQ(Row(), "[#-------------------] work: 9%, 900 of 10000, 1000/s");
        WorkUntil(2000, 1000, 10000);
        EXPECT_THAT(Row(), HasSubstr(", 1000/s, 0:08 left"));
    });
}

TEST_F(ProgressLine, SaysNothingOfTheTimeLeftAtRateZero) {
    WhileItWorks([this] {
        m_test.Set(500, 1000);
        LookUntil(20000, m_line);
        EXPECT_EQ(Row(), "[##########----------] work: 50%, 500 of 1000, 0/s");
    });
}

TEST_F(ProgressLine, SaysNothingOfATimeLeftOfDays) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(3000, 10, 100'000'000);
        EXPECT_THAT(Row(), Not(HasSubstr("left")));
    });
}

TEST_F(ProgressLine, JudgesTheTimeLeftByTheLastFewSeconds) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(10000, 1000, 20000);
        EXPECT_THAT(Row(), HasSubstr("10000 of 20000, 1000/s, 0:10 left"));
        // One slow second changes the rate at once and the time left a little.
        WorkUntil(11000, 100, 20000);
        EXPECT_THAT(Row(), HasSubstr(" 100/s, 0:12 left"));
        WorkUntil(41000, 100, 20000);
        EXPECT_THAT(Row(), HasSubstr(" 100/s, 1:08 left"));
    });
}

TEST_F(ProgressLine, ShowsThePresentRate) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(1000, 1000, 10000);
        EXPECT_THAT(Row(), HasSubstr(" 1000/s"));
        WorkUntil(2000, 10, 10000);
        EXPECT_THAT(Row(), HasSubstr(" 10/s"));
    });
}

TEST_F(ProgressLine, CountsNoTimeInWhichTheProgramWasStopped) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(4000, 100, 1000);
        m_now += 3'600'000;
        m_line.Look(m_now);
        EXPECT_EQ(Row(), "[########------------] work: 40%, 400 of 1000, 100/s, 0:06 left");
        WorkUntil(m_now + 2000, 100, 1000);
        EXPECT_EQ(Row(), "[############--------] work: 60%, 600 of 1000, 100/s, 0:04 left");
    });
}

TEST_F(ProgressLine, TakesATestThatGoesBack) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(2000, 200, 400);
        EXPECT_EQ(Row(), "[####################] work: 100%, 400 of 400, 200/s");
        m_done = 300;
        WorkUntil(2100, 0, 400);
        EXPECT_EQ(Row(), "[###############-----] work: 75%, 300 of 400, 200/s");
        WorkUntil(4100, 20, 400);
        EXPECT_EQ(Row(), "[#################---] work: 85%, 340 of 400, 20/s, 0:03 left");
    });
}

TEST_F(ProgressLine, TakesATestThatDoesMoreThanItAnnounced) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(3000, 10, 20);
        EXPECT_EQ(Row(), "[####################] work: 100%, 30 of 20, 10/s");
    });
}

TEST_F(ProgressLine, CountsBeyond32Bits) {
    WhileItWorks([this] {
        m_line.Look(0);
        m_test.Set(~uint64_t{0} / 2, ~uint64_t{0} - 1);
        m_line.Look(100);
        EXPECT_THAT(Row(), HasSubstr("work: 50%"));
        EXPECT_THAT(Row(), HasSubstr(" of 18446744073709551614, 18446744073709551615/s"));
    });
}

TEST_F(ProgressLine, DoesWithoutATotal) {
    WhileItWorks([this] {
        LookUntil(3000, m_line);
        EXPECT_EQ(Row(), "work: 0:00:03");
        WorkUntil(4000, 70, 0);
        EXPECT_EQ(Row(), "work: 70, 70/s");
    });
}

TEST_F(ProgressLine, ShowsTheLatestTextBehindTheFigures) {
    WhileItWorks([this] {
        m_test.Set(50, 100);
        CRunNote::Say("pass 1\n");
        CRunNote::Say("pass\t2 of\x1b[2J 3\nand more\n");
        LookUntil(1000, m_line);
        EXPECT_EQ(Row(), "[##########----------] work: 50%, 50 of 100, 0/s, pass 2 of[2J 3");
    });
}

TEST_F(ProgressLine, KeepsWhatIsMostUsefulOnANarrowScreen) {
    WhileItWorks([this] {
        CRunNote::Say("some text");
        m_line.Look(0);
        WorkUntil(4000, 100, 1000);
        const std::string whole =
            "[########------------] work: 40%, 400 of 1000, 100/s, 0:06 left, some text";
        EXPECT_EQ(m_line.Row(static_cast<unsigned int>(whole.size())), whole);
        EXPECT_EQ(m_line.Row(73),
                  "[########------------] work: 40%, 400 of 1000, 100/s, 0:06 left, some tex");
        EXPECT_EQ(m_line.Row(72),
                  "[########------------] work: 40%, 400 of 1000, 100/s, 0:06 left");
        EXPECT_EQ(m_line.Row(62), "[########------------] work: 40%, 400 of 1000, 0:06 left");
        EXPECT_EQ(m_line.Row(50), "work: 40%, 400 of 1000, 0:06 left");
        EXPECT_EQ(m_line.Row(30), "work: 40%, 0:06 left");
        EXPECT_EQ(m_line.Row(10), "work: 40%");
        EXPECT_EQ(m_line.Row(8), "work");
        EXPECT_EQ(m_line.Row(3), "wor");
        EXPECT_EQ(m_line.Row(0), "");
    });
}

TEST_F(ProgressLine, CutsNoCharacterInTwo) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    CRunNote::Say("\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC");
    LookUntil(1000, m_other);
    EXPECT_EQ(m_other.Row(23), "read: 0:00:01, " + std::string("\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC"
                                                               "\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC"));
    std::setlocale(LC_CTYPE, "C");
}

TEST_F(ProgressLine, IsDueWhenTheTestWorkedForAMoment) {
    WhileItWorks([this] {
        m_line.Look(1000);
        m_line.Look(1000 + CProgressLine::BAR_AFTER_MS - 1);
        EXPECT_FALSE(m_line.IsDue());
        m_line.Look(1000 + CProgressLine::BAR_AFTER_MS);
        EXPECT_TRUE(m_line.IsDue());
    });
}

TEST_F(ProgressLine, ShowsTheTimeOfATestThatHasYetToBegin) {
    m_line.Look(0);
    m_line.Look(CProgressLine::STATUS_AFTER_MS - 1);
    EXPECT_FALSE(m_line.IsDue());
    m_line.Look(5000);
    EXPECT_TRUE(m_line.IsDue());
    EXPECT_EQ(Row(), "work: 0:00:05");
}

TEST_F(ProgressLine, IsTimeAndTextOfACommand) {
    m_other.Look(0);
    m_other.Look(CProgressLine::STATUS_AFTER_MS - 1);
    EXPECT_FALSE(m_other.IsDue());
    CRunNote::Say("page 3");
    m_other.Look(3000);
    EXPECT_TRUE(m_other.IsDue());
    EXPECT_EQ(m_other.Row(COLUMNS), "read: 0:00:03, page 3");
}

TEST_F(ProgressLine, IsABarOfABuiltInThatCounts) {
    CRunNote::Count(0, 1000);
    m_other.Look(0);
    for (uint64_t done = 100; done <= 300; done += 100) {
        CRunNote::Count(done, 1000);
        m_other.Look(done * 10);
    }
    EXPECT_EQ(m_other.Row(COLUMNS),
              "[######--------------] read: 30%, 300 of 1000, 100/s, 0:07 left");
}

TEST_F(ProgressLine, SaysThatItStops) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(4000, 100, 1000);
        m_line.SetStopping();
        EXPECT_EQ(Row(), "[########------------] work: stopping, 40%, 400 of 1000, 100/s");
    });
    m_other.Look(0);
    m_other.SetStopping();
    EXPECT_TRUE(m_other.IsDue());
    EXPECT_EQ(m_other.Row(COLUMNS), "read: stopping, 0:00:00");
}

TEST_F(ProgressLine, IsALineEveryFewSecondsWithoutAScreen) {
    WhileItWorks([this] {
        m_line.Look(0);
        WorkUntil(CProgressLine::LINE_EVERY_MS - LOOK_MS, 10, 100);
        EXPECT_EQ(m_line.TakeDueLine(), std::nullopt);
        WorkUntil(CProgressLine::LINE_EVERY_MS, 10, 100);
        EXPECT_EQ(m_line.TakeDueLine(), "work: 50%, 50 of 100, 10/s, 0:05 left");
        EXPECT_EQ(m_line.TakeDueLine(), std::nullopt);
        WorkUntil(2 * CProgressLine::LINE_EVERY_MS, 10, 100);
        EXPECT_EQ(m_line.TakeDueLine(), "work: 100%, 100 of 100, 10/s");
    });
    LookUntil(100'000, m_other);
    EXPECT_EQ(m_other.TakeDueLine(), std::nullopt);
}

TEST_F(ProgressLine, IsALineForALongCommandTooWithoutAScreen) {
    class CLongCmd : public CDiagMenu, public CLongWork {
      public:
        CLongCmd() : CDiagMenu(TFUNC, "program", "") {}
        void Work(uint64_t done) { ProgressCb(done, 100); }
    } command;
    const CRunNote note(&command);
    CProgressLine line("program", nullptr, note);
    for (uint64_t now = 0; now <= CProgressLine::LINE_EVERY_MS; now += LOOK_MS) {
        EXPECT_EQ(line.TakeDueLine(), std::nullopt);
        command.Work(now * 10 / 1000);
        line.Look(now);
    }
    EXPECT_EQ(line.TakeDueLine(), "program: 50%, 50 of 100, 10/s, 0:05 left");
}

}  // namespace
