// Watches what runs, in the foreground and in jobs: knows which thread runs
// what, says who waits for a device and for whom, and shows the progress of the
// foreground test.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

class CDiagTestBase;
class CProgressLine;
class CTerminal;

class CRunWatch {
  public:
    // When a wait is worth a line.
    static constexpr uint64_t WAIT_TOLD_AFTER_MS = 300;

    explicit CRunWatch(CTerminal& terminal);
    ~CRunWatch();
    CRunWatch(const CRunWatch&) = delete;
    CRunWatch& operator=(const CRunWatch&) = delete;

    // Looks by itself from now on, while something runs.
    void Start();
    // One look, given the time in milliseconds.
    void Look(uint64_t now);

    // "waiting for /dev, held by /dev/test (job 1)": what the thread waits for
    // now, if it does.
    std::optional<std::string> WaitOf(std::thread::id thread) const;

  private:
    struct CEntry;

  public:
    // Has what the calling thread runs watched for a scope.
    class CRunning {
      public:
        // In the foreground; a test shows its progress.
        CRunning(CRunWatch& watch, const std::string& name, const CDiagTestBase* test);
        // In the job of that number.
        CRunning(CRunWatch& watch, const std::string& name, unsigned int job);
        ~CRunning();
        CRunning(const CRunning&) = delete;
        CRunning& operator=(const CRunning&) = delete;

      private:
        CRunWatch& m_watch;
        std::list<CEntry>::iterator m_entry;
    };

  private:
    std::list<CEntry>::iterator Add(CEntry entry);
    void Remove(std::list<CEntry>::iterator entry);
    void LookAtWait(CEntry& entry, uint64_t now);
    std::optional<std::string> DescribeWait(std::thread::id thread) const;
    std::string UserOf(std::thread::id thread) const;
    void LookOnAndOn();

    CTerminal& m_terminal;
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    std::list<CEntry> m_running;
    bool m_ended = false;
    std::thread m_looker;
};
