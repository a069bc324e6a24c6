#include "host/shell/run/run_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "host/device_lock.h"
#include "host/terminal.h"
#include "tests/host/shell/text_file.h"
#include "tests/support/gate.h"

namespace {

constexpr uint64_t SOON = CRunWatch::WAIT_TOLD_AFTER_MS;

// Runs something, in the foreground or in a job, that holds a device.
class CHoldingRun {
  public:
    CHoldingRun(CRunWatch& watch, unsigned int job, const CDiagDevice& device)
        : m_thread([this, &watch, job, &device] {
              const CRunWatch::CRunning running(watch, "/board/holder", job);
              const auto hold =
                  CDeviceHold::Acquire({{&device, DEV_LOCK_ACCESS}}, [] { return false; });
              m_holds.set_value();
              m_release.get_future().wait();
          }) {
        m_holds.get_future().wait();
    }
    ~CHoldingRun() {
        m_release.set_value();
        m_thread.join();
    }
    CHoldingRun(const CHoldingRun&) = delete;
    CHoldingRun& operator=(const CHoldingRun&) = delete;

  private:
    std::promise<void> m_holds;
    std::promise<void> m_release;
    std::thread m_thread;
};

// Runs something that waits for a device until it is told not to.
class CWaitingRun {
  public:
    CWaitingRun(CRunWatch& watch, unsigned int job, const CDiagDevice& device)
        : m_thread([this, &watch, job, &device] {
              const CRunWatch::CRunning running(watch, "/board/waiter", job);
              CDeviceHold::Acquire({{&device, DEV_LOCK_ACCESS}}, [this] {
                  if (!m_looked) {
                      m_looked = true;
                      m_waits.set_value();
                  }
                  return m_stop.load();
              });
              m_ended.set_value();
              m_leave.get_future().wait();
          }) {
        m_waits.get_future().wait();
    }
    ~CWaitingRun() {
        EndWait();
        m_leave.set_value();
        m_thread.join();
    }
    CWaitingRun(const CWaitingRun&) = delete;
    CWaitingRun& operator=(const CWaitingRun&) = delete;

    // The run goes on without the device.
    void EndWait() {
        if (!m_stop.exchange(true)) {
            CDeviceHold::WakeWaiting();
            m_ended.get_future().wait();
        }
    }
    std::thread::id Id() const { return m_thread.get_id(); }

  private:
    bool m_looked = false;
    std::atomic<bool> m_stop{false};
    std::promise<void> m_waits;
    std::promise<void> m_ended;
    std::promise<void> m_leave;
    std::thread m_thread;
};

class RunWatch : public testing::Test {
  protected:
    RunWatch() { m_root.AddChild(m_device, CDiagObj::NO_SORT); }

    std::string Written() { return m_file.Written(); }

    const std::thread::id m_main = std::this_thread::get_id();
    CTextFile m_file;
    CTerminal m_terminal{m_file.Get(), m_file.Get()};
    CDiagMenu m_root{TMENU, "board", ""};
    CDiagDevice* m_device = new CDiagDevice("dev", "", TDEVICE);
    CRunWatch m_watch{m_terminal};
};

TEST_F(RunWatch, TellsAWaitOnceAfterAMoment) {
    const CHoldingRun holder(m_watch, 3, *m_device);
    const CWaitingRun waiter(m_watch, 0, *m_device);
    m_watch.Look(1000);
    m_watch.Look(1000 + SOON - 1);
    EXPECT_EQ(Written(), "");
    m_watch.Look(1000 + SOON);
    m_watch.Look(1000 + 100 * SOON);
    EXPECT_EQ(Written(), "waiting for /dev, held by /board/holder (job 3)\n");
}

TEST_F(RunWatch, TellsWhichJobWaits) {
    const CHoldingRun holder(m_watch, 0, *m_device);
    const CWaitingRun waiter(m_watch, 12, *m_device);
    m_watch.Look(0);
    m_watch.Look(SOON);
    EXPECT_EQ(Written(), "[12] waiting for /dev, held by /board/holder\n");
}

TEST_F(RunWatch, TellsAWaitOfRunsInOneAnotherOnce) {
    const CRunWatch::CRunning outer(m_watch, "repeat 3 /dev/read", "repeat", nullptr);
    const CRunWatch::CRunning inner(m_watch, "/dev/read", "read", nullptr);
    const CHoldingRun holder(m_watch, 3, *m_device);
    CGate looked;
    std::thread looker([&] {
        while (!m_watch.WaitOf(m_main).has_value()) {
            std::this_thread::yield();
        }
        m_watch.Look(0);
        m_watch.Look(SOON);
        looked.Open();
        CDeviceHold::WakeWaiting();
    });
    const auto hold =
        CDeviceHold::Acquire({{m_device, DEV_LOCK_ACCESS}}, [&] { return looked.IsOpen(); });
    looker.join();
    EXPECT_EQ(hold, nullptr);
    EXPECT_EQ(Written(), "waiting for /dev, held by /board/holder (job 3)\n");
}

TEST_F(RunWatch, TellsNothingOfAShortWait) {
    const CHoldingRun holder(m_watch, 1, *m_device);
    CWaitingRun waiter(m_watch, 2, *m_device);
    m_watch.Look(0);
    waiter.EndWait();
    m_watch.Look(SOON);
    EXPECT_EQ(Written(), "");
}

TEST_F(RunWatch, TellsThatSomebodyUnknownHoldsTheDevice) {
    const auto hold = CDeviceHold::Acquire({{m_device, DEV_LOCK_ACCESS}}, [] { return false; });
    const CWaitingRun waiter(m_watch, 2, *m_device);
    EXPECT_EQ(m_watch.WaitOf(waiter.Id()), "waiting for /dev, held by the board");
    EXPECT_FALSE(m_watch.WaitOf(std::this_thread::get_id()).has_value());
}

// What is below the lines, on a screen of 80 columns or none.
class RunWatchScreen : public RunWatch {
  protected:
    static constexpr char ERASED[] = "\r\x1b[K";

    // Starts what is in the foreground.
    CRunWatch::CRunning Foreground(const std::string& label) {
        return {m_screen, "/" + label, label, nullptr};
    }

    unsigned int m_columns = 80;
    CRunWatch m_screen{m_terminal, [this] { return m_columns; }};
};

TEST_F(RunWatchScreen, ShowsACommandThatTakesLongerThanASecond) {
    {
        const auto running = Foreground("read");
        m_screen.Look(0);
        m_screen.Look(900);
        EXPECT_EQ(Written(), "");
        m_root.SendLog(LogWord(LOG_LT_PROGRESS, 1), "page %d\n", 3);
        m_screen.Look(3000);
        EXPECT_EQ(Written(), std::string(ERASED) + "read: 0:00:03, page 3");
    }
    EXPECT_EQ(Written(), ERASED);
}

TEST_F(RunWatchScreen, ChangesTheRowOnlySoOften) {
    const auto running = Foreground("read");
    m_screen.Look(0);
    m_screen.Look(2000);
    Written();
    CRunNote::Say("more");
    m_screen.Look(2000 + CRunWatch::ROW_EVERY_MS - 1);
    EXPECT_EQ(Written(), "");
    m_screen.Look(2000 + CRunWatch::ROW_EVERY_MS);
    EXPECT_EQ(Written(), std::string(ERASED) + "read: 0:00:02, more");
}

TEST_F(RunWatchScreen, KeepsTheRowOfTheOuterWhenTheInnerIsShort) {
    const auto outer = Foreground("repeat");
    m_screen.Look(0);
    m_screen.Look(1000);
    Written();
    {
        const auto inner = Foreground("probe");
        m_screen.Look(1200);
        EXPECT_EQ(Written(), std::string(ERASED) + "repeat: 0:00:01");
    }
    EXPECT_EQ(Written(), "");
    {
        const auto inner = Foreground("probe");
        m_screen.Look(2000);
        m_screen.Look(3000);
        EXPECT_EQ(Written(), std::string(ERASED) + "repeat: 0:00:02" + ERASED + "probe: 0:00:01");
    }
    EXPECT_EQ(Written(), ERASED);
    m_screen.Look(3100);
    EXPECT_EQ(Written(), std::string(ERASED) + "repeat: 0:00:03");
}

TEST_F(RunWatchScreen, LeavesTheLastColumnFree) {
    m_columns = 10;
    const auto running = Foreground("a-long-name");
    m_screen.Look(0);
    m_screen.Look(1000);
    EXPECT_EQ(Written(), std::string(ERASED) + "a-long-na");
}

TEST_F(RunWatchScreen, ShowsNothingOfACommandWithoutAScreen) {
    m_columns = 0;
    const auto running = Foreground("read");
    m_screen.Look(0);
    m_screen.Look(100'000);
    EXPECT_EQ(Written(), "");
}

TEST_F(RunWatchScreen, CatchesNoTextsWithoutAScreen) {
    const CRunWatch::CRunning running(m_watch, "/read", "read", nullptr);
    // Only that of the watch with a screen is there.
    CRunNote note;
    m_root.SendLog(LogWord(LOG_LT_PROGRESS, 1), "page\n");
    EXPECT_EQ(note.Text(), "page");
}

}  // namespace
