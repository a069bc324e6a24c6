// Runs of a test that go wrong: whatever throws, the device is released.
#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "framework/diag_exception.h"
#include "tests/host/test_run.h"
#include "tests/support/lock_probe.h"
#include "tests/support/log_capture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class Base>
class TestRunFailure : public TestRunBase<Base> {};
TYPED_TEST_SUITE(TestRunFailure, TestKinds);

TYPED_TEST(TestRunFailure, EndsEarlyWhenTheSetupRefuses) {
    this->m_test->m_on_setup = [](CInMsg&) { return false; };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "setup", "release"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    ASSERT_FALSE(this->m_device.Statuses().empty());
    EXPECT_EQ(this->m_device.Statuses().back(), DS_FAILED);
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRunFailure, EndsEarlyWhenTheSetupThrows) {
    const CLogCapture log;
    this->m_test->m_on_setup = [](CInMsg&) -> bool { throw CDiagException("no such port %d", 9); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "setup", "release"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("no such port 9")));
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
}

TYPED_TEST(TestRunFailure, EndsEarlyWhenAnArgumentIsMissing) {
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

TYPED_TEST(TestRunFailure, CleansUpWhenTheTestThrows) {
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

TYPED_TEST(TestRunFailure, TakesAnyOtherExceptionJustSo) {
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

TYPED_TEST(TestRunFailure, TellsThatTheCleanupFailedToo) {
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

TYPED_TEST(TestRunFailure, TellsThatTheCleanupFailedAfterAnException) {
    const CLogCapture log;
    this->m_test->m_on_run = [](COutMsg&) -> ETestStatus { throw CDiagException("first"); };
    this->m_test->m_on_cleanup = [] { throw CDiagException("second"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED_NCUP);
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("first"), HasSubstr("second")));
    EXPECT_EQ(this->m_device.GetFailures(), 1U);
}

TYPED_TEST(TestRunFailure, ReleasesItsDeviceWhenTheCleanupOfAGoodRunThrows) {
    const CLogCapture log;
    this->m_test->m_on_cleanup = [] { throw CDiagException("still open"); };
    EXPECT_NO_THROW(this->Run());
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre(HasSubstr("still open")));
    EXPECT_FALSE(WouldWait(this->m_device, DEV_LOCK_ACCESS));
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(MSG_ERR_NOTRUN));
}

TYPED_TEST(TestRunFailure, EndsWhenTheReleaseOfItsDevicesThrows) {
    const CLogCapture log;
    this->m_test->m_on_release = [] { throw CDiagException("stuck"); };
    EXPECT_THAT(this->Run().bytes, ElementsAre(2));
    EXPECT_THAT(log.Texts(LW_ERR_SW), ElementsAre("stuck"));
    EXPECT_EQ(this->m_test->GetStatus(), DS_FAILED);
    this->m_test->m_on_release = [] {};
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

}  // namespace
