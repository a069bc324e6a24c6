// Watches what runs, in the foreground and in jobs: knows which thread runs
// what, says who waits for a device and for whom, and shows how far the
// foreground is.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "host/diag_log.h"
#include "host/shell/run/run_note.h"

class CDiagMenu;
class CTerminal;

class CRunWatch {
  public:
    // When a wait is worth a line.
    static constexpr uint64_t WAIT_TOLD_AFTER_MS = 300;
    // How often the row of the foreground changes.
    static constexpr uint64_t ROW_EVERY_MS = 200;

    // The columns of the screen at the time, 0 without one.
    using CColumns = std::function<unsigned int()>;

    // On the terminal's screen, or on one of `columns`.
    explicit CRunWatch(CTerminal& terminal);
    CRunWatch(CTerminal& terminal, CColumns columns);
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
        // In the foreground, or in what runs there already. `label` names it in
        // few words; `node` is null for a built-in.
        CRunning(CRunWatch& watch, const std::string& name, const std::string& label,
                 const CDiagMenu* node);
        // In the job of that number.
        CRunning(CRunWatch& watch, const std::string& name, unsigned int job);
        ~CRunning();
        CRunning(const CRunning&) = delete;
        CRunning& operator=(const CRunning&) = delete;

        // Of what is in the foreground, from any thread, at a time in milliseconds:
        // Shows at once that it was asked to stop; false without a screen.
        bool ShowStopping(uint64_t now);
        // ", 45%, 14746 of 32768: putting back 0x0000 to 0x00ff", or what of it is
        // known.
        std::string HowFar(uint64_t now) const;
        // Whether nothing else runs in it now.
        bool IsInnermost() const;
        // Whether it waits for a device.
        bool IsWaiting() const;

      private:
        CRunWatch& m_watch;
        std::optional<CRunNote> m_note;
        std::list<CEntry>::iterator m_entry;
    };

  private:
    std::list<CEntry>::iterator Add(CEntry entry);
    void Remove(std::list<CEntry>::iterator entry);
    void LookAtWait(CEntry& entry, uint64_t now);
    void ShowForeground(uint64_t now);
    void ShowRow(const CEntry& entry, unsigned int columns, uint64_t now);
    std::optional<std::string> DescribeWait(std::thread::id thread) const;
    std::string UserOf(std::thread::id thread) const;
    void LookOnAndOn();

    CTerminal& m_terminal;
    const CColumns m_columns;
    CRunNote::CCatcher m_catcher;
    std::optional<CLogSinkScope> m_catching;
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    std::list<CEntry> m_running;       // the latest first
    const CEntry* m_row_of = nullptr;  // whose row shows
    uint64_t m_row_shown = 0;          // when
    bool m_ended = false;
    std::thread m_looker;
};
