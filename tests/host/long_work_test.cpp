// Commands that tell how far they are and can be stopped.
#include "framework/long_work.h"

#include <gtest/gtest.h>

#include "framework/diag_func.h"
#include "host/run_stop.h"
#include "tests/support/request.h"

namespace {

// Counts to a hundred, unless it is stopped.
class CLongCmd : public CDiagFunc, public CLongWork {
  public:
    explicit CLongCmd(CRunStop& stop) : CDiagFunc("count", "", 0), m_stop(stop) {}
    void Invoke(CInMsg&, COutMsg& out) override {
        for (uint64_t done = 0; done < 100; ++done) {
            if (!ProgressCb(done, 100)) {
                out << static_cast<uint8_t>(MSG_ERR_ABORTED);
                return;
            }
            if (done == m_stop_at) {
                m_stop.Request();
            }
        }
        out << static_cast<uint8_t>(MSG_SUCCESS);
    }
    uint64_t m_stop_at = 1000;

  private:
    CRunStop& m_stop;
};

class CShortCmd : public CDiagFunc {
  public:
    CShortCmd() : CDiagFunc("short", "", 0) {}
    void Invoke(CInMsg&, COutMsg&) override {}
};

class LongWork : public testing::Test {
  protected:
    CRunStop m_stop;
    CLongCmd m_command{m_stop};
};

TEST_F(LongWork, TellsHowFarItIs) {
    EXPECT_EQ(m_command.GetProgressTotal(), 0U);
    EXPECT_EQ(Send(m_command, MSG_CALL).bytes.at(0), MSG_SUCCESS);
    EXPECT_EQ(m_command.GetProgressDone(), 99U);
    EXPECT_EQ(m_command.GetProgressTotal(), 100U);
}

TEST_F(LongWork, SeesAStopOfItsOwnRun) {
    const CRunStop::CScope scope(m_stop);
    m_command.m_stop_at = 41;
    EXPECT_EQ(Send(m_command, MSG_CALL).bytes.at(0), MSG_ERR_ABORTED);
    EXPECT_EQ(m_command.GetProgressDone(), 42U);
}

TEST_F(LongWork, DoesNotSeeAStopOfAnotherRun) {
    CRunStop another;
    const CRunStop::CScope scope(another);
    m_command.m_stop_at = 41;
    EXPECT_EQ(Send(m_command, MSG_CALL).bytes.at(0), MSG_SUCCESS);
}

TEST_F(LongWork, UnderstandsARequestToStop) {
    CShortCmd other;
    EXPECT_EQ(Send(m_command, MSG_STOP).Code(), MSG_SUCCESS);
    EXPECT_EQ(Send(other, MSG_STOP).Code(), MSG_ERR_MSGTYPE);
}

}  // namespace
