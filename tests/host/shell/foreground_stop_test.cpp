#include "host/shell/run/foreground_stop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "host/shell/run/node_run.h"
#include "tests/host/shell/job_board.h"

namespace {

using testing::StartsWith;

constexpr char ERASED[] = "\r\x1b[K";

// What Ctrl-C says of what runs in the foreground, without a screen or on one.
class ForegroundStop : public JobBoard {
  protected:
    // Calls `then`, which stops it, while the node runs in the foreground of a
    // watch of its own, and awaits its end.
    template <class Then>
    EResCode While(CDiagObj& node, CGate& works, CGate& gate, Then then) {
        CNodeRun run(node, {}, "");
        EResCode code = MSG_ERR_NORESP;
        CRunWatch watch(m_terminal, [this] { return m_columns; });
        CGate begun;
        CGate said;
        std::thread thread([&] {
            CRunWatch::CRunning running(watch, "/a", node.GetName(), &run.Node());
            CForegroundStop stop(m_terminal, running, run);
            m_stop = &stop;
            begun.Open();
            code = run.Perform(m_terminal, m_shell->Recorder());
            said.Await();
        });
        begun.Await();
        works.Await();
        Written();
        then(*m_stop);
        if (run.Test() == nullptr || m_a.gated->cleans_up) {
            gate.Open();  // a test ends because it was stopped
        }
        said.Open();
        thread.join();
        return code;
    }

    unsigned int m_columns = 0;
    CForegroundStop* m_stop = nullptr;
};

TEST_F(ForegroundStop, SaysOnceThatATestStops) {
    const EResCode code = While(*m_a.gated, m_a.gated->works, m_a.gated->gate, [this](auto& stop) {
        stop.OnInterrupt(1000);
        EXPECT_THAT(Written(), StartsWith("stopping /a/gated\n"));
    });
    EXPECT_EQ(code, MSG_ERR_ABORTED);
}

TEST_F(ForegroundStop, SaysASecondTimeWhatIsAwaited) {
    m_a.gated->cleans_up = true;  // or it would be over before it is looked at again
    While(*m_a.gated, m_a.gated->works, m_a.gated->gate, [this](auto& stop) {
        stop.OnInterrupt(1000);
        Written();
        stop.OnInterrupt(1500);
        EXPECT_EQ(Written(),
                  "/a/gated: still stopping and restoring after 500 ms, 50%, 50 of 100\n");
        stop.OnInterrupt(1500 + CForegroundStop::TELL_EVERY_MS - 1);
        EXPECT_EQ(Written(), "");
        stop.OnInterrupt(2900);
        EXPECT_EQ(Written(),
                  "/a/gated: still stopping and restoring after 1.90 s, 50%, 50 of 100\n");
        stop.OnInterrupt(2900 + CForegroundStop::SOON_MS);
        EXPECT_EQ(Written(), "/a/gated: asked again to stop after 3.90 s, 50%, 50 of 100\n");
    });
}

TEST_F(ForegroundStop, ShowsAtOnceOnAScreenThatATestStops) {
    m_columns = 80;
    m_a.gated->cleans_up = true;
    While(*m_a.gated, m_a.gated->works, m_a.gated->gate, [this](auto& stop) {
        stop.OnInterrupt(1000);
        EXPECT_EQ(Written(), std::string(ERASED) +
                                 "[##########----------] gated: stopping, 50%, 50 of 100, 0/s");
    });
}

TEST_F(ForegroundStop, SaysThatACommandCannotBeStopped) {
    const EResCode code = While(*m_a.block, m_a.block->works, m_a.block->gate, [this](auto& stop) {
        stop.OnInterrupt(1000);
        EXPECT_EQ(Written(), "/a/block: cannot be stopped, it goes on to its end\n");
        stop.OnInterrupt(1100);
        EXPECT_EQ(Written(), "/a/block: goes on to its end\n");
    });
    EXPECT_EQ(code, MSG_SUCCESS);
}

TEST_F(ForegroundStop, LeavesABuiltInAlone) {
    CRunWatch watch(m_terminal, [] { return 0U; });
    CRunWatch::CRunning running(watch, "import eeprom file", "import", nullptr);
    CForegroundStop stop(m_terminal, running, "import eeprom file");
    stop.OnInterrupt(0);
    EXPECT_EQ(Written(), "");
    CRunNote::Count(64, 256);
    CRunNote::Say("reading back");
    stop.OnInterrupt(100);
    EXPECT_EQ(Written(),
              "import eeprom file: still stopping after 100 ms, 25%, 64 of 256: "
              "reading back\n");
}

TEST_F(ForegroundStop, LeavesTheAnswerToWhatRunsInIt) {
    CRunWatch watch(m_terminal, [] { return 0U; });
    CRunWatch::CRunning outer(watch, "repeat 3 x", "repeat", nullptr);
    CForegroundStop stop(m_terminal, outer, "repeat 3 x");
    {
        const CRunWatch::CRunning inner(watch, "x", "x", nullptr);
        stop.OnInterrupt(0);
        stop.OnInterrupt(100);
        EXPECT_EQ(Written(), "");
    }
    stop.OnInterrupt(200);
    EXPECT_EQ(Written(), "repeat 3 x: still stopping after 200 ms\n");
}

}  // namespace
