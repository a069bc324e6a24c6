// A run of a test: its stages, its answers, what its device sees of it.
#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/diag_func.h"
#include "tests/host/test_run.h"
#include "tests/support/bytes.h"
#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

template <class Base>
class TestRun : public TestRunBase<Base> {};
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
    CDeviceCmd() : CDiagFunc("command", "", SHARES_DEVICE) {}
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
