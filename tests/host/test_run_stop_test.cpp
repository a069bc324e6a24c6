// Runs of a test that are stopped, and requests that come while it runs.
#include <gmock/gmock.h>

#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/host/test_run.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

CAnswer SendFromAnotherThread(CDiagMenu& node, EMsgType type) {
    CAnswer reply;
    std::thread([&] { reply = Send(node, type); }).join();
    return reply;
}

template <class Base>
class TestRunStop : public TestRunBase<Base> {};
TYPED_TEST_SUITE(TestRunStop, TestKinds);

TYPED_TEST(TestRunStop, GoesOnUntilAStop) {
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

TYPED_TEST(TestRunStop, SeesAStopOfItsOwnThreadToo) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->RequestStop(true);
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(10));
}

TYPED_TEST(TestRunStop, DoesNotSeeAStopThatWasTakenBack) {
    this->m_test->m_on_run = [&](COutMsg&) {
        this->m_test->RequestStop(true);
        this->m_test->RequestStop(false);
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_THAT(this->Run().bytes, ElementsAre(0));
}

TYPED_TEST(TestRunStop, ForgetsTheStopOfAnEarlierRun) {
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

TYPED_TEST(TestRunStop, ForgetsAStopOnceItHasEnded) {
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

TYPED_TEST(TestRunStop, IsNotStoppedWhenItIsNotRunning) {
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(9));
    this->Run();
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(9));
    EXPECT_EQ(this->m_test->GetStatus(), DS_PASSED);
}

TYPED_TEST(TestRunStop, IsNotStartedWhileItIsRunning) {
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

TYPED_TEST(TestRunStop, WaitsForItsDevice) {
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

TYPED_TEST(TestRunStop, IsStoppedWhileItWaitsForItsDevice) {
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

}  // namespace
