#include "framework/timed_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "framework/diag_exception.h"
#include "framework/diag_param.h"
#include "tests/support/bytes.h"
#include "tests/support/fake_clock.h"
#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A timed test whose step is told what to do.
class CStepTest : public CTimedTest {
  public:
    explicit CStepTest(bool keep_going, const std::string& duration_desc = "")
        : CTimedTest("rw-test", "timed", duration_desc, keep_going) {}

    std::function<bool(CInMsg&)> m_on_setup = [](CInMsg&) { return true; };
    std::function<bool()> m_on_step = [] { return true; };
    std::function<void()> m_on_cleanup = [] {};

    int Steps() const { return m_steps; }

    bool TestSetupEx(CInMsg& in) override { return m_on_setup(in); }
    bool TestExecute() override {
        ++m_steps;
        return m_on_step();
    }
    void TestCleanup() override {
        m_on_cleanup();
        CTimedTest::TestCleanup();
    }

  private:
    int m_steps = 0;
};

class TimedTest : public testing::Test {
  protected:
    TimedTest() {
        m_device.AddChild(m_test, CDiagObj::NO_SORT);
        m_device.AddChild(m_stubborn, CDiagObj::NO_SORT);
        for (CStepTest* test : {m_test, m_stubborn}) {
            test->AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
        }
    }
    // Steps that take `ms` each and of which the ones numbered in `failing` fail.
    static void StepsOf(CStepTest& test, CFakeClock& clock, unsigned int ms,
                        std::vector<int> failing = {}) {
        test.m_on_step = [&test, &clock, ms, failing] {
            clock.Advance(ms);
            for (const int step : failing) {
                if (step == test.Steps()) {
                    return false;
                }
            }
            return true;
        };
    }
    static CByteVector Answer(uint8_t code, uint32_t passed, uint32_t failed) {
        return CBytes().U8(code).U32(passed).U32(failed);
    }

    CFakeClock m_clock;
    CWatchedDevice m_device{"device"};
    CStepTest* m_test = new CStepTest(false);
    CStepTest* m_stubborn = new CStepTest(true);
};

const CDiagParam& ParamOf(const CDiagObj& test, const std::string& name) {
    const auto* param = dynamic_cast<const CDiagParam*>(test.FindChild(name));
    if (param == nullptr) {
        throw CDiagException("no parameter %s", name.c_str());
    }
    return *param;
}

TEST_F(TimedTest, DeclaresADurationThatMayBeLeftOut) {
    const CDiagParam& duration = ParamOf(*m_test, "duration");
    EXPECT_EQ(duration.GetParamType(), PT_IN | PT_OPTIONAL);
    EXPECT_EQ(duration.GetValueType() & VF_TYPE_MASK, VT_UINT32);
    EXPECT_EQ(m_test->GetChildren().at(0), &duration);
}

TEST_F(TimedTest, DeclaresItsCountsAsOutputs) {
    for (const char* name : {"passed", "failed"}) {
        const CDiagParam& count = ParamOf(*m_test, name);
        EXPECT_EQ(count.GetParamType(), PT_OUT);
        EXPECT_EQ(count.GetValueType() & VF_TYPE_MASK, VT_UINT32);
    }
    ASSERT_EQ(m_test->GetChildren().size(), 3U);
    EXPECT_STREQ(m_test->GetChildren()[1]->GetName(), "passed");
    EXPECT_STREQ(m_test->GetChildren()[2]->GetName(), "failed");
}

TEST_F(TimedTest, DescribesItsDurationAsItIsTold) {
    const CStepTest told(false, "seconds to hammer the bus");
    EXPECT_STREQ(ParamOf(told, "duration").GetDescription(), "seconds to hammer the bus");
    EXPECT_STRNE(ParamOf(*m_test, "duration").GetDescription(), "");
}

TEST_F(TimedTest, RepeatsItsStepForTheGivenSeconds) {
    StepsOf(*m_test, m_clock, 700);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{2}).bytes, Answer(0, 3, 0));
    EXPECT_EQ(m_test->Steps(), 3);
    EXPECT_EQ(m_test->GetStatus(), DS_PASSED);
    EXPECT_EQ(m_test->GetPassCount(), 3U);
    EXPECT_EQ(m_test->GetFailCount(), 0U);
}

TEST_F(TimedTest, EndsWhenTheTimeIsOver) {
    StepsOf(*m_test, m_clock, 1000);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{3}).bytes, Answer(0, 3, 0));
}

TEST_F(TimedTest, RunsForTenSecondsUnlessToldOtherwise) {
    StepsOf(*m_test, m_clock, 1000);
    EXPECT_EQ(Send(*m_test, MSG_CALL).bytes, Answer(0, 10, 0));
}

TEST_F(TimedTest, TakesItsDefaultAgainAfterARunWithADuration) {
    StepsOf(*m_test, m_clock, 1000);
    Send(*m_test, MSG_CALL, uint32_t{2});
    EXPECT_EQ(Send(*m_test, MSG_CALL).bytes, Answer(0, 10, 0));
}

TEST_F(TimedTest, RunsOneStepAtLeast) {
    StepsOf(*m_test, m_clock, 1);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{0}).bytes, Answer(0, 1, 0));
}

TEST_F(TimedTest, FinishesAStepThatTakesLongerThanTheTest) {
    StepsOf(*m_test, m_clock, 60000);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{1}).bytes, Answer(0, 1, 0));
}

TEST_F(TimedTest, CountsFromWhereverTheClockStands) {
    m_clock.Advance(0xFFFFFFFF00);
    StepsOf(*m_test, m_clock, 1000);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{3}).bytes, Answer(0, 3, 0));
}

TEST_F(TimedTest, RunsForDurationsOfManyWeeks) {
    // More milliseconds than 32 bits hold.
    StepsOf(*m_test, m_clock, 1000000000);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{5000000}).bytes, Answer(0, 5, 0));
}

TEST_F(TimedTest, EndsAtTheFirstFailedStep) {
    StepsOf(*m_test, m_clock, 100, {3});
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{10}).bytes, Answer(2, 2, 1));
    EXPECT_EQ(m_test->Steps(), 3);
    EXPECT_EQ(m_test->GetStatus(), DS_FAILED);
    EXPECT_EQ(m_test->GetFailCount(), 1U);
    EXPECT_EQ(m_device.GetFailures(), 1U);
}

TEST_F(TimedTest, CountsFailuresAndGoesOnIfItKeepsGoing) {
    StepsOf(*m_stubborn, m_clock, 1000, {2, 4});
    EXPECT_EQ(Send(*m_stubborn, MSG_CALL, uint32_t{5}).bytes, Answer(2, 3, 2));
    EXPECT_EQ(m_stubborn->Steps(), 5);
    EXPECT_EQ(m_stubborn->GetStatus(), DS_FAILED);
}

TEST_F(TimedTest, PassesWithoutAFailureIfItKeepsGoing) {
    StepsOf(*m_stubborn, m_clock, 1000);
    EXPECT_EQ(Send(*m_stubborn, MSG_CALL, uint32_t{4}).bytes, Answer(0, 4, 0));
    EXPECT_EQ(m_stubborn->GetStatus(), DS_PASSED);
}

TEST_F(TimedTest, BeginsToCountAgainInEveryRun) {
    StepsOf(*m_stubborn, m_clock, 1000, {1});
    EXPECT_EQ(Send(*m_stubborn, MSG_CALL, uint32_t{2}).bytes, Answer(2, 1, 1));
    EXPECT_EQ(Send(*m_stubborn, MSG_CALL, uint32_t{2}).bytes, Answer(0, 2, 0));
    EXPECT_EQ(m_stubborn->GetStatus(), DS_PASSED);
}

TEST_F(TimedTest, EndsBetweenTwoStepsWhenStopped) {
    m_test->m_on_step = [this] {
        m_clock.Advance(1000);
        if (m_test->Steps() == 2) {
            EXPECT_THAT(Send(*m_test, MSG_STOP).bytes, ElementsAre(0));
        }
        return true;
    };
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{60}).bytes, Answer(10, 2, 0));
    EXPECT_EQ(m_test->GetStatus(), DS_ABORTED);
    EXPECT_EQ(m_device.GetFailures(), 0U);
}

TEST_F(TimedTest, HandsWhatFollowsTheDurationToItsSetup) {
    uint8_t page = 0;
    m_test->m_on_setup = [&](CInMsg& in) {
        in >> page;
        return in.GetLen() == 0;
    };
    StepsOf(*m_test, m_clock, 1000);
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{1}, uint8_t{0x42}).bytes, Answer(0, 1, 0));
    EXPECT_EQ(page, 0x42);
}

TEST_F(TimedTest, RunsNoStepWhenItsSetupRefuses) {
    m_test->m_on_setup = [](CInMsg&) { return false; };
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{1}).Code(), 2);
    EXPECT_EQ(m_test->Steps(), 0);
    EXPECT_EQ(m_test->GetStatus(), DS_FAILED);
}

TEST_F(TimedTest, RunsNoStepForADurationItCannotRead) {
    const CLogCapture log;
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint8_t{1}).Code(), 2);
    EXPECT_EQ(m_test->Steps(), 0);
    EXPECT_EQ(m_test->GetStatus(), DS_FAILED);
    EXPECT_EQ(log.Texts(LW_ERR_SW).size(), 1U);
}

TEST_F(TimedTest, FailsWhenAStepThrows) {
    const CLogCapture log;
    m_test->m_on_step = []() -> bool { throw CDiagException("no acknowledge"); };
    EXPECT_EQ(Send(*m_test, MSG_CALL, uint32_t{1}).Code(), 2);
    EXPECT_EQ(m_test->GetStatus(), DS_FAILED);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("no acknowledge")));
    EXPECT_FALSE(WouldWait(m_device, DEV_LOCK_ACCESS));
}

TEST_F(TimedTest, HoldsItsDeviceDuringEachStepAndInTheCleanup) {
    int held = 0;
    const auto probe = [&] { held += WouldWait(m_device, DEV_LOCK_PROTECT) ? 1 : 0; };
    m_test->m_on_step = [&] {
        m_clock.Advance(1000);
        probe();
        return true;
    };
    m_test->m_on_cleanup = probe;
    Send(*m_test, MSG_CALL, uint32_t{3});
    EXPECT_EQ(held, 4);
    EXPECT_FALSE(WouldWait(m_device, DEV_LOCK_ACCESS));
}

TEST_F(TimedTest, IsInProgressDuringItsSteps) {
    m_test->m_on_step = [this] {
        m_clock.Advance(1000);
        EXPECT_EQ(m_test->GetStatus(), DS_PROGRESS);
        return true;
    };
    Send(*m_test, MSG_CALL, uint32_t{2});
    EXPECT_EQ(m_test->Steps(), 2);
}

TEST_F(TimedTest, RunsWithoutSleeping) {
    StepsOf(*m_test, m_clock, 1000);
    Send(*m_test, MSG_CALL, uint32_t{3});
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

// Answers in its own words.
class CVerdictTest : public CTimedTest {
  public:
    explicit CVerdictTest(CFakeClock& clock)
        : CTimedTest("verdict", "", "", false), m_clock(clock) {}
    bool TestExecute() override {
        m_clock.Advance(1000);
        return GetPassCount() < 2;
    }
    void TestResultEx(COutMsg& out, EResCode code) override {
        out << static_cast<uint8_t>(code) << "verdict";
    }

  private:
    CFakeClock& m_clock;
};

TEST_F(TimedTest, LetsItsClassWriteTheAnswer) {
    auto* test = new CVerdictTest(m_clock);
    m_device.AddChild(test, CDiagObj::NO_SORT);
    EXPECT_EQ(Send(*test, MSG_CALL, uint32_t{2}).bytes, CBytes().U8(0).Text("verdict").Get());
    EXPECT_EQ(Send(*test, MSG_CALL, uint32_t{9}).bytes, CBytes().U8(2).Text("verdict").Get());
}

TEST_F(TimedTest, AnswersAQueryWithSuccessAndItsDescription) {
    COutMsg described;
    m_test->Query(described);
    CByteVector want{MSG_SUCCESS};
    const CByteVector description = PayloadOf(described);
    want.insert(want.end(), description.begin(), description.end());
    EXPECT_EQ(Send(*m_test, MSG_QUERY).bytes, want);
    EXPECT_EQ(m_test->Steps(), 0);
}

TEST_F(TimedTest, SendsItsTextsToTheLogUnchanged) {
    const CLogCapture log;
    m_test->SendLog(LW_ERR_TEST, "mismatch at 0x%x\n", 0x10U);
    EXPECT_THAT(log.Lines(), ElementsAre(CLogCapture::Line{0x10, "mismatch at 0x10\n"}));
}

}  // namespace
