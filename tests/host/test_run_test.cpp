// One run of a test, the same for the test of a device and of several.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/diag_exception.h"
#include "framework/diag_func.h"
#include "framework/diag_multi_dev_test.h"
#include "framework/diag_test.h"
#include "tests/support/bytes.h"
#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

CAnswer SendFromAnotherThread(CDiagMenu& node, EMsgType type) {
    CAnswer reply;
    std::thread([&] { reply = Send(node, type); }).join();
    return reply;
}

// A test below its device.
template <class Base>
class TestRun : public testing::Test {
  protected:
    using CTest = CRecordingTest<Base>;

    TestRun() {
        m_device.AddChild(m_test, CDiagObj::NO_SORT);
        if constexpr (std::is_same_v<Base, CDiagMultiDevTest>) {
            m_test->AddDeviceAccess("..", DEV_LOCK_ACCESS, true);
        }
    }
    CAnswer Run() { return Send(*m_test, MSG_CALL); }
    void FinishWith(ETestStatus status) {
        m_test->m_on_run = [status](COutMsg&) { return status; };
    }

    CWatchedDevice m_device{"device"};
    CTest* m_test = new CTest;
};
using TestKinds = testing::Types<CDiagTest, CDiagMultiDevTest>;
TYPED_TEST_SUITE(TestRun, TestKinds);

TYPED_TEST(TestRun, BeginsUntested) {
    EXPECT_EQ(this->m_test->GetStatus(), DS_UNTESTED);
    EXPECT_FALSE(this->m_test->IsStopReq());
}

TYPED_TEST(TestRun, TakesItsStagesInOrder) {
    this->Run();
    EXPECT_THAT(this->m_test->StageNames(),
                ElementsAre("lock", "setup", "run", "cleanup", "release"));
}

TYPED_TEST(TestRun, ShowsEachStageInItsStatus) {
    using CStage = std::pair<std::string, ETestStatus>;
    this->Run();
    EXPECT_THAT(this->m_test->Stages(), Contains(CStage("lock", DS_DEVACC)));
    EXPECT_THAT(this->m_test->Stages(), Contains(CStage("setup", DS_SETUP)));
    EXPECT_THAT(this->m_test->Stages(), Contains(CStage("run", DS_PROGRESS)));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRun, AnswersToACallAndToAStart) {
    EXPECT_THAT(Send(*this->m_test, MSG_CALL).bytes, ElementsAre(0));
    EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(0));
    EXPECT_EQ(this->m_test->Stages().size(), 10U);
}

TYPED_TEST(TestRun, HandsTheArgumentsToTheSetup) {
    uint16_t count = 0;
    this->m_test->m_on_setup = [&](CInMsg& in) {
        in >> count;
        return in.GetLen() == 0;
    };
    EXPECT_THAT(Send(*this->m_test, MSG_CALL, uint16_t{0x1234}).bytes, ElementsAre(0));
    EXPECT_EQ(count, 0x1234);
}

TYPED_TEST(TestRun, EndsInTheStatusThatTheTestReturns) {
    for (const ETestStatus status : {DS_PASSED, DS_FAILED, DS_ABORTED}) {
        this->FinishWith(status);
        this->Run();
        EXPECT_EQ(this->m_test->GetStatus(), status);
    }
}

TYPED_TEST(TestRun, AnswersForATestThatDoesNot) {
    this->FinishWith(DS_PASSED);
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
    this->FinishWith(DS_FAILED);
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    this->FinishWith(DS_ABORTED);
    EXPECT_THAT(this->Run().bytes, ElementsAre(10));
}

TYPED_TEST(TestRun, KeepsTheAnswerOfATestThatDoes) {
    this->m_test->m_on_run = [](COutMsg& out) {
        out << uint8_t{2} << uint16_t{0xABCD};
        return DS_FAILED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2, 0xAB, 0xCD));
}

TYPED_TEST(TestRun, TellsItsDeviceHowItEnded) {
    for (const ETestStatus status : {DS_PASSED, DS_FAILED, DS_ABORTED}) {
        this->FinishWith(status);
        this->Run();
        ASSERT_FALSE(this->m_device.Statuses().empty());
        EXPECT_EQ(this->m_device.Statuses().back(), status);
    }
}

TYPED_TEST(TestRun, CountsItsFailuresOnItsDevice) {
    this->FinishWith(DS_PASSED);
    this->Run();
    EXPECT_EQ(this->m_device.GetFailures(), 0U);
    this->FinishWith(DS_FAILED);
    this->Run();
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    this->Run();
    EXPECT_EQ(this->m_device.GetFailures(), 2U);
    this->FinishWith(DS_ABORTED);
    this->Run();
    EXPECT_EQ(this->m_device.GetFailures(), 2U);
}

TYPED_TEST(TestRun, HoldsItsDeviceFromSetupToCleanup) {
    std::vector<bool> held;
    const auto probe = [&] { held.push_back(WouldWait(this->m_device, DEV_LOCK_PROTECT)); };
    this->m_test->m_on_setup = [&](CInMsg&) {
        probe();
        return true;
    };
    this->m_test->m_on_run = [&](COutMsg&) {
        probe();
        return DS_PASSED;
    };
    this->m_test->m_on_cleanup = probe;
    this->Run();
    EXPECT_THAT(held, ElementsAre(true, true, true));
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

class CDeviceCmd : public CDiagFunc {
  public:
    CDeviceCmd() : CDiagFunc("command", "", HOLDS_DEVICE) {}
    void Invoke(CInMsg&, COutMsg& out) override { out << uint8_t{0}; }
};

TYPED_TEST(TestRun, MayCallACommandOfItsOwnDevice) {
    auto* command = new CDeviceCmd;
    this->m_device.AddChild(command, CDiagObj::NO_SORT);
    this->m_test->m_on_run = [&](COutMsg&) {
        return Send(*command, MSG_CALL).Code() == MSG_SUCCESS ? DS_PASSED : DS_FAILED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

TYPED_TEST(TestRun, EndsEarlyWhenTheSetupRefuses) {
    this->m_test->m_on_setup = [](CInMsg&) { return false; };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "setup", "release"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    ASSERT_FALSE(this->m_device.Statuses().empty());
    EXPECT_EQ(this->m_device.Statuses().back(), DS_FAILED);
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, EndsEarlyWhenTheSetupThrows) {
    const CLogCapture log;
    this->m_test->m_on_setup = [](CInMsg&) -> bool { throw CDiagException("no such port %d", 9); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "setup", "release"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("no such port 9")));
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, EndsEarlyWhenAnArgumentIsMissing) {
    const CLogCapture log;
    this->m_test->m_on_setup = [](CInMsg& in) {
        uint32_t count = 0;
        in >> count;
        return true;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "setup", "release"));
    EXPECT_EQ(log.Texts(LW_ERR_SW).size(), 1U);
}

TYPED_TEST(TestRun, CleansUpWhenTheTestThrows) {
    const CLogCapture log;
    this->m_test->m_on_run = [](COutMsg& out) -> ETestStatus {
        out << uint8_t{0} << "half an answer";
        throw CDiagException("no acknowledge from %02x", 0x50U);
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(),
                ElementsAre("lock", "setup", "run", "cleanup", "release"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("no acknowledge from 50")));
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, TakesAnyOtherExceptionJustSo) {
    const CLogCapture log;
    this->m_test->m_on_run = [](COutMsg&) -> ETestStatus { throw std::runtime_error("out of %s"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    this->m_test->m_on_run = [](COutMsg&) -> ETestStatus { throw 42; };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    const std::vector<std::string> texts = log.Texts(LW_ERR_SW);
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_THAT(texts[0], HasSubstr("out of %s"));
    EXPECT_NE(texts[1], "");
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, TellsThatTheCleanupFailedToo) {
    const CLogCapture log;
    this->FinishWith(DS_FAILED);
    this->m_test->m_on_cleanup = [] { throw CDiagException("still open"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED_NCUP);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("still open")));
    ASSERT_FALSE(this->m_device.Statuses().empty());
    EXPECT_EQ(this->m_device.Statuses().back(), DS_FAILED_NCUP);
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_EQ(this->m_test->StageNames().back(), "release");
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, TellsThatTheCleanupFailedAfterAnException) {
    const CLogCapture log;
    this->m_test->m_on_run = [](COutMsg&) -> ETestStatus { throw CDiagException("first"); };
    this->m_test->m_on_cleanup = [] { throw CDiagException("second"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED_NCUP);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("first"), HasSubstr("second")));
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
}

TYPED_TEST(TestRun, ReleasesItsDeviceWhenTheCleanupOfAGoodRunThrows) {
    const CLogCapture log;
    this->m_test->m_on_cleanup = [] { throw CDiagException("still open"); };
    EXPECT_NO_THROW(this->Run());
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("still open")));
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(MSG_ERR_NOTRUN));
}

TYPED_TEST(TestRun, GoesOnUntilAStop) {
    this->m_test->m_on_run = [&](COutMsg&) {
        EXPECT_TRUE(this->m_test->ProgressCb());
        EXPECT_FALSE(this->m_test->IsStopReq());
        EXPECT_THAT(SendFromAnotherThread(*this->m_test, MSG_STOP).bytes, ElementsAre(0));
        EXPECT_TRUE(this->m_test->IsStopReq());
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(10));
    EXPECT_EQ(this->m_test->GetStatus(), DS_ABORTED);
    EXPECT_THAT(this->m_test->StageNames(),
                ElementsAre("lock", "setup", "run", "cleanup", "release"));
}

TYPED_TEST(TestRun, SeesAStopOfItsOwnThreadToo) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->RequestStop(true);
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(10));
}

TYPED_TEST(TestRun, DoesNotSeeAStopThatWasTakenBack) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->RequestStop(true);
        this->m_test->RequestStop(false);
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

TYPED_TEST(TestRun, ForgetsTheStopOfAnEarlierRun) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->RequestStop(true);
        return DS_ABORTED;
    };
    this->Run();
    this->m_test->m_on_run = [&](COutMsg&) {
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRun, IsNotStoppedWhenItIsNotRunning) {
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(9));
    this->Run();
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(9));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRun, EndsWhenTheReleaseOfItsDevicesThrows) {
    const CLogCapture log;
    this->m_test->m_on_release = [] { throw CDiagException("stuck"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre("stuck"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    this->m_test->m_on_release = [] {};
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

TYPED_TEST(TestRun, ForgetsAStopOnceItHasEnded) {
    this->m_test->m_on_run = [this](COutMsg&) {
        this->m_test->RequestStop(true);
        return DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(10));
    this->m_test->m_on_run = [this](COutMsg&) {
        return this->m_test->IsStopReq() ? DS_FAILED : DS_PASSED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

TYPED_TEST(TestRun, IsNotStartedWhileItIsRunning) {
    this->m_test->m_on_run = [&](COutMsg&) {
        for (const EMsgType type : {MSG_START, MSG_CALL}) {
            EXPECT_THAT(SendFromAnotherThread(*this->m_test, type).bytes, ElementsAre(8));
            EXPECT_THAT(Send(*this->m_test, type).bytes, ElementsAre(8));
        }
        EXPECT_EQ(this->m_test->GetStatus(), DS_PROGRESS);
        return DS_PASSED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
    EXPECT_THAT(this->m_test->StageNames(),
                ElementsAre("lock", "setup", "run", "cleanup", "release"));
}

TYPED_TEST(TestRun, WaitsForItsDevice) {
    std::promise<void> waiting;
    this->m_test->m_on_lock = [&] { waiting.set_value(); };
    CLockHolder holder({{&this->m_device, DEV_LOCK_PROTECT}});
    CAnswer reply;
    std::thread runner([&] { reply = this->Run(); });
    waiting.get_future().wait();
    EXPECT_EQ(this->m_test->GetStatus(), DS_DEVACC);
    holder.Release();
    runner.join();
    EXPECT_THAT(reply.bytes, ElementsAre(0));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRun, IsStoppedWhileItWaitsForItsDevice) {
    std::promise<void> waiting;
    this->m_test->m_on_lock = [&] { waiting.set_value(); };
    CLockHolder holder({{&this->m_device, DEV_LOCK_ACCESS}});
    CAnswer reply;
    std::thread runner([&] { reply = this->Run(); });
    waiting.get_future().wait();
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(0));
    runner.join();
    EXPECT_THAT(reply.bytes, ElementsAre(10));
    EXPECT_EQ(this->m_test->GetStatus(), DS_ABORTED);
    const std::vector<std::string> stages = this->m_test->StageNames();
    EXPECT_THAT(stages, testing::Not(Contains("setup")));
    EXPECT_THAT(stages, testing::Not(Contains("run")));
    EXPECT_EQ(this->m_device.GetFailures(), 0U);
    holder.Release();
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRun, IsForgottenOnReset) {
    this->FinishWith(DS_FAILED);
    this->Run();
    this->m_test->Reset();
    EXPECT_EQ(this->m_test->GetStatus(), DS_UNTESTED);
}

TYPED_TEST(TestRun, IsLeftAloneByAResetWhileItRuns) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->Reset();
        EXPECT_EQ(this->m_test->GetStatus(), DS_PROGRESS);
        return DS_PASSED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRun, DoesNotBeginOnAQuery) {
    COutMsg described;
    this->m_test->Query(described);
    CByteVector want{MSG_SUCCESS};
    const CByteVector description = PayloadOf(described);
    want.insert(want.end(), description.begin(), description.end());
    EXPECT_EQ(Send(*this->m_test, MSG_QUERY).bytes, want);
    EXPECT_THAT(this->m_test->Stages(), IsEmpty());
}

TYPED_TEST(TestRun, DoesNotBeginOnAnyOtherMessage) {
    for (const EMsgType type : {MSG_PEEKV, MSG_POKEV, MSG_NULL}) {
        EXPECT_THAT(Send(*this->m_test, type).bytes, ElementsAre(MSG_ERR_MSGTYPE));
    }
    EXPECT_THAT(this->m_test->Stages(), IsEmpty());
}

TYPED_TEST(TestRun, SendsItsTextsToTheLogUnchanged) {
    const CLogCapture log;
    this->m_test->SendLog(LW_PRINT, "pass %d\n", 3);
    EXPECT_THAT(log.Lines(), ElementsAre(CLogCapture::Line{0xB0, "pass 3\n"}));
}

}  // namespace
