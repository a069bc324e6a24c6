#include <gmock/gmock.h>

#include <csignal>

#include "tests/host/shell/job_board.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ShellJobs : public JobBoard {
  protected:
    // What "jobs" prints as soon as a job waits.
    std::string ListedOnceOneWaits() {
        std::string listed;
        do {
            Written();
            Run("jobs");
            listed = Written();
        } while (listed.find("waiting") == std::string::npos);
        return listed;
    }
};

TEST_F(ShellJobs, RunBesideTheForeground) {
    EXPECT_EQ(Run("a/gated &"), EXIT_PASSED);
    m_a.gated->works.Await();
    EXPECT_EQ(Written(), "[1] /a/gated: started\n[1] half done\n");
    EXPECT_EQ(Run("b/say hello"), EXIT_PASSED);
    EXPECT_EQ(Written(), "hello\n");
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
    EXPECT_EQ(Written(), "[1] /a/gated: passed\n");
}

TEST_F(ShellJobs, RunCommandsToo) {
    EXPECT_EQ(Run("a/say 'two words' &"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 1"), EXIT_PASSED);
    EXPECT_EQ(Written(),
              "[1] /a/say two words: started\n[1] two words\n[1] /a/say two words: passed\n");
}

TEST_F(ShellJobs, PrintTheirOutputsAndNameTheLineThatStartedThem) {
    EXPECT_EQ(m_shell->Execute("a/count &", "file:7"), EXIT_PASSED);
    EXPECT_EQ(Run("wait"), EXIT_FAILED);
    EXPECT_EQ(Written(),
              "[1] /a/count: started\n[1] found = 3\n[1] file:7: /a/count: failed (ERR_FAIL)\n");
}

TEST_F(ShellJobs, AreListedWithTheirStateAndTime) {
    EXPECT_EQ(Run("jobs"), EXIT_PASSED);
    EXPECT_EQ(Written(), "");
    Run("a/gated &");
    m_a.gated->works.Await();
    Run("b/block &");
    m_b.block->works.Await();
    m_clock.Advance(125'000);
    Written();
    EXPECT_EQ(Run("jobs"), EXIT_PASSED);
    EXPECT_EQ(Written(), "[1] /a/gated: running 50%, 0:02:05\n[2] /b/block: running, 0:02:05\n");
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait 1"), EXIT_PASSED);
    m_clock.Advance(3'600'000);
    Written();
    EXPECT_EQ(Run("jobs"), EXIT_PASSED);
    EXPECT_EQ(Written(), "[1] /a/gated: passed, 0:02:05\n[2] /b/block: running, 1:02:05\n");
    m_b.block->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
}

TEST_F(ShellJobs, AreListedWithWhatTheyWaitFor) {
    Run("a/block &");
    m_a.block->works.Await();
    Run("a/gated &");
    while (m_a.gated->GetStatus() != DS_DEVACC) {
        std::this_thread::yield();
    }
    EXPECT_THAT(ListedOnceOneWaits(),
                HasSubstr("[2] /a/gated: waiting for /a, held by /a/block (job 1), 0:00:00\n"));
    m_a.block->gate.Open();
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
}

TEST_F(ShellJobs, TakeTurnsForOneTest) {
    Run("a/gated &");
    m_a.gated->works.Await();
    Run("a/gated &");
    EXPECT_THAT(ListedOnceOneWaits(),
                HasSubstr("[2] /a/gated: waiting for /a/gated, held by /a/gated (job 1), "));
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED) << Written();
}

TEST_F(ShellJobs, AreStoppedWhileTheyWaitForTheirTurn) {
    Run("a/gated &");
    m_a.gated->works.Await();
    Run("a/gated &");
    Run("stop 2");
    EXPECT_EQ(Run("wait 2"), EXIT_ABORTED);
    EXPECT_EQ(m_a.gated->GetStatus(), DS_PROGRESS) << "the first run goes on";
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait 1"), EXIT_PASSED);
}

TEST_F(ShellJobs, AreStoppedByNumber) {
    Run("a/gated &");
    Run("b/gated &");
    EXPECT_EQ(Run("stop 2"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 2"), EXIT_ABORTED);
    m_a.gated->works.Await();
    const std::string written = Written();
    EXPECT_THAT(written, HasSubstr("[2] /b/gated: stopping\n"));
    EXPECT_THAT(written, HasSubstr("[2] /b/gated: aborted (ERR_ABORTED)\n"));
    EXPECT_EQ(m_a.gated->GetStatus(), DS_PROGRESS);
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait 1"), EXIT_PASSED);
}

TEST_F(ShellJobs, AreStoppedByNode) {
    Run("a/gated &");
    Run("b/gated &");
    EXPECT_EQ(Run("stop b"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 2"), EXIT_ABORTED);
    EXPECT_EQ(Run("stop b"), EXIT_PASSED);
    EXPECT_THAT(Written(), HasSubstr("no job runs there\n"));
    EXPECT_EQ(Run("stop /"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 1"), EXIT_ABORTED);
    EXPECT_EQ(Run("stop"), EXIT_PASSED);
    EXPECT_THAT(Written(), testing::EndsWith("no job runs\n"));
}

TEST_F(ShellJobs, AreStoppedWhileTheyWaitForADevice) {
    Run("a/block &");
    m_a.block->works.Await();
    Run("a/gated &");
    EXPECT_EQ(Run("stop a/gated"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 2"), EXIT_ABORTED);
    m_a.block->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
}

TEST_F(ShellJobs, SayWhenTheyCannotBeStopped) {
    Run("a/block &");
    m_a.block->works.Await();
    Written();
    EXPECT_EQ(Run("stop"), EXIT_PASSED);
    EXPECT_EQ(Written(), "[1] /a/block: cannot be stopped, it goes on to its end\n");
    m_a.block->gate.Open();
    EXPECT_EQ(Run("wait 1"), EXIT_PASSED);
    Written();
    EXPECT_EQ(Run("stop 1"), EXIT_PASSED);
    EXPECT_EQ(Written(), "[1] /a/block: passed, 0:00:00\n");
}

TEST_F(ShellJobs, GiveTheWorstOfTheirResults) {
    Run("a/count &");
    Run("b/gated &");
    Run("b/say hello &");
    Run("stop 2");
    EXPECT_EQ(Run("wait 3"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 2 3"), EXIT_ABORTED);
    EXPECT_EQ(Run("wait 3 2 1"), EXIT_FAILED);
    // All results have been given.
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
    EXPECT_EQ(Run("wait 1"), EXIT_FAILED);
}

TEST_F(ShellJobs, GoOnWhenCtrlCEndsAWait) {
    Run("a/gated &");
    m_a.gated->works.Await();
    Written();
    std::raise(SIGINT);
    EXPECT_EQ(Run("wait"), EXIT_ABORTED);
    EXPECT_EQ(Written(), "wait: ended by Ctrl-C; the jobs go on\n");
    m_interrupt.Clear();
    EXPECT_EQ(m_a.gated->GetStatus(), DS_PROGRESS);
    m_a.gated->gate.Open();
    EXPECT_EQ(Run("wait"), EXIT_PASSED);
}

TEST_F(ShellJobs, AreNotStartedFromWrongInput) {
    for (const auto& [line, error] : std::vector<std::pair<const char*, const char*>>{
             {"&", "& at column 1 needs a command before it\n"},
             {"jobs &", "jobs: & runs commands and tests, not built-ins\n"},
             {"a/say &", "/a/say: missing argument text"},
             {"a/none &", "a/none: there is no \"none\" in /a"},
             {"a &", "/a is a device; "},
             {"wait 1", "there is no job 1; jobs lists them\n"},
             {"wait 1x", "there is no job 1x; jobs lists them\n"},
             {"stop 0", "there is no job 0; jobs lists them\n"},
             {"stop none", "none: there is no \"none\" in /"}}) {
        EXPECT_EQ(Run(line), EXIT_USAGE) << line;
        EXPECT_THAT(Written(), StartsWith(error)) << line;
    }
    EXPECT_TRUE(m_shell->Jobs().All().empty());
}

TEST_F(ShellJobs, AreForgottenOnlyWhenTheyHaveEndedLongAgo) {
    Run("a/block &");
    m_a.block->works.Await();
    for (size_t i = 0; i < CJobs::KEPT + 1; ++i) {
        ASSERT_EQ(Run("b/say hello &"), EXIT_PASSED);
        ASSERT_EQ(Run("wait " + std::to_string(i + 2)), EXIT_PASSED);
    }
    EXPECT_EQ(m_shell->Jobs().All().size(), CJobs::KEPT + 1);
    EXPECT_EQ(Run("wait 2"), EXIT_USAGE);
    EXPECT_EQ(Run("wait 3"), EXIT_PASSED);
    EXPECT_NE(m_shell->Jobs().Find(1), nullptr);
    m_a.block->gate.Open();
}

TEST_F(ShellJobs, AreStoppedAndAwaitedWhenTheRunEnds) {
    EXPECT_EQ(RunCommands(*m_shell, {"a/gated &", "b/say hello"}), EXIT_ABORTED);
    const std::string written = Written();
    EXPECT_THAT(written,
                HasSubstr("leaving: 1 job is asked to stop and awaited; Ctrl-C tells how far\n"));
    EXPECT_THAT(written, HasSubstr("[1] /a/gated: aborted (ERR_ABORTED)\n"));
    EXPECT_TRUE(m_shell->Jobs().All().empty());
}

TEST_F(ShellJobs, AreAllAskedToStopBeforeOneIsAwaited) {
    EXPECT_EQ(RunCommands(*m_shell, {"a/gated &", "b/gated &"}), EXIT_ABORTED);
    const std::string written = Written();
    const size_t stopping = written.find("[2] /b/gated: stopping\n");
    ASSERT_NE(stopping, std::string::npos) << written;
    EXPECT_LT(written.find("[1] /a/gated: stopping\n"), stopping);
}

TEST_F(ShellJobs, CountInTheStatusOfARunThatPassed) {
    EXPECT_EQ(RunCommands(*m_shell, {"a/count &", "wait", "b/say hello"}), EXIT_FAILED);
    EXPECT_THAT(Written(), testing::Not(HasSubstr("hello")));
    EXPECT_EQ(RunCommands(*m_shell, {"a/gated &", "stop"}), EXIT_PASSED);
    EXPECT_EQ(RunCommands(*m_shell, {"b/gated &", "none"}), EXIT_USAGE);
}

}  // namespace
