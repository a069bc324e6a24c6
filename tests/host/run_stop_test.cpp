// Stops that come before a run has begun, while it waits, or just as it ends.
#include "host/run_stop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "framework/diag_func.h"
#include "framework/diag_multi_dev_test.h"
#include "framework/diag_test.h"
#include "tests/support/lock_probe.h"
#include "tests/support/recording_test.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;

class CCountingCmd : public CDiagFunc {
  public:
    CCountingCmd() : CDiagFunc("command", "", SHARES_DEVICE) {}
    void Invoke(CInMsg&, COutMsg& out) override {
        ++m_calls;
        out << uint8_t{0};
    }
    int m_calls = 0;
};

class RunStop : public testing::Test {
  protected:
    RunStop() { m_device.AddChild(m_command, CDiagObj::NO_SORT); }

    CDiagDevice m_device{"device", "", TDEVICE};
    CCountingCmd* m_command = new CCountingCmd;
    CRunStop m_stop;
};

TEST_F(RunStop, IsSeenOnlyByTheThreadThatItIsFor) {
    m_stop.Request();
    EXPECT_FALSE(CRunStop::IsRequestedHere());
    {
        const CRunStop::CScope scope(m_stop);
        EXPECT_TRUE(CRunStop::IsRequestedHere());
        std::thread([] { EXPECT_FALSE(CRunStop::IsRequestedHere()); }).join();
        CRunStop inner;
        const CRunStop::CScope inner_scope(inner);
        EXPECT_FALSE(CRunStop::IsRequestedHere());
    }
    EXPECT_FALSE(CRunStop::IsRequestedHere());
}

TEST_F(RunStop, EndsACommandThatWaitsForItsDevice) {
    const CLockHolder holder({{&m_device, DEV_LOCK_ACCESS}});
    std::promise<void> begins;
    CAnswer reply;
    std::thread caller([&] {
        const CRunStop::CScope scope(m_stop);
        begins.set_value();
        reply = Send(*m_command, MSG_CALL);
    });
    begins.get_future().wait();
    m_stop.Request();
    caller.join();
    EXPECT_THAT(reply.bytes, ElementsAre(MSG_ERR_ABORTED));
    EXPECT_EQ(m_command->m_calls, 0);
}

TEST_F(RunStop, LeavesACommandAloneThatNeedNotWait) {
    const CRunStop::CScope scope(m_stop);
    m_stop.Request();
    EXPECT_THAT(Send(*m_command, MSG_CALL).bytes, ElementsAre(0));
}

template <class Base>
class StoppedTest : public testing::Test {
  protected:
    class CTest : public CRecordingTest<Base> {
      public:
        void RequestStop(bool stop) override {
            m_on_stop();
            Base::RequestStop(stop);
        }
        std::function<void()> m_on_stop = [] {};
    };
    StoppedTest() { m_device.AddChild(m_test, CDiagObj::NO_SORT); }

    CDiagDevice m_device{"device", "", TDEVICE};
    CTest* m_test = new CTest;
    CRunStop m_stop;
};
using TestKinds = testing::Types<CDiagTest, CDiagMultiDevTest>;
TYPED_TEST_SUITE(StoppedTest, TestKinds);

TYPED_TEST(StoppedTest, DoesNotWorkWhenTheStopCameBeforeItBegan) {
    {
        const CRunStop::CScope scope(this->m_stop);
        this->m_stop.Request();
        EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(MSG_ERR_ABORTED));
    }
    EXPECT_THAT(this->m_test->StageNames(), ElementsAre("lock", "release"));
    EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(MSG_SUCCESS));
}

// The stop is on its way while the run ends: it must not outlive the run.
TYPED_TEST(StoppedTest, DoesNotPassAStopThatCameTooLateToItsNextRun) {
    std::promise<void> works;
    std::promise<void> stop_comes;
    std::promise<void> ended;
    std::future<void> has_ended = ended.get_future();
    this->m_test->m_on_run = [&](COutMsg&) {
        works.set_value();
        stop_comes.get_future().wait();
        return DS_PASSED;
    };
    std::thread runner([&] {
        EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(MSG_SUCCESS));
        ended.set_value();
    });
    works.get_future().wait();
    this->m_test->m_on_stop = [&] {
        stop_comes.set_value();
        // Time for a run that does not wait for this stop to end before it.
        has_ended.wait_for(std::chrono::milliseconds(50));
    };
    EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(MSG_SUCCESS));
    runner.join();

    this->m_test->m_on_run = [this](COutMsg&) {
        return this->m_test->ProgressCb() ? DS_PASSED : DS_ABORTED;
    };
    EXPECT_FALSE(this->m_test->IsStopReq());
    EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(MSG_SUCCESS));
}

TYPED_TEST(StoppedTest, MayHandItsStopOnToAnotherTest) {
    CRecordingTest<CDiagTest> part;
    std::promise<void> part_works;
    part.m_on_run = [&](COutMsg&) {
        part_works.set_value();
        while (part.ProgressCb()) {
            std::this_thread::yield();
        }
        return DS_ABORTED;
    };
    this->m_test->m_on_stop = [&] {
        EXPECT_THAT(Send(part, MSG_STOP).bytes, ElementsAre(MSG_SUCCESS));
    };
    this->m_test->m_on_run = [&](COutMsg&) {
        std::thread stopper([&] {
            part_works.get_future().wait();
            EXPECT_THAT(Send(*this->m_test, MSG_STOP).bytes, ElementsAre(MSG_SUCCESS));
        });
        const uint8_t code = Send(part, MSG_START).Code();
        stopper.join();
        return code == MSG_ERR_ABORTED ? DS_ABORTED : DS_FAILED;
    };
    EXPECT_THAT(Send(*this->m_test, MSG_START).bytes, ElementsAre(MSG_ERR_ABORTED));
}

}  // namespace
