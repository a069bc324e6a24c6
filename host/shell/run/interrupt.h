// Ctrl-C: asks what is in the foreground to stop and ends the script that runs it.
// SIGTERM, SIGQUIT (Ctrl-\) and SIGHUP, from a terminal that is closed, do the same
// for good: tests have memories to restore before the shell may end.
#pragma once

#include <functional>
#include <list>
#include <mutex>
#include <thread>

class CInterrupt {
  public:
    // Takes over the signals for as long as it lives; there is one at a time.
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    // Whether Ctrl-C came since the last Clear, or the end.
    bool IsPending() const;
    // Whether the shell is to end.
    bool IsEnd() const;
    void Clear();
    // A descriptor that is readable while Ctrl-C is pending: to be polled beside
    // the input, since a signal may come just before a read begins to wait.
    int Descriptor() const;

  private:
    friend class CForeground;

    void Watch();

    std::mutex m_lock;
    std::list<std::function<void()>> m_foreground;  // the innermost first
    std::thread m_watcher;
};

// Tells the interrupt what runs, for a scope. Each signal calls `stop`, from a
// thread of the interrupt's own, and what was given in the scopes around it.
class CForeground {
  public:
    CForeground(CInterrupt& interrupt, std::function<void()> stop);
    ~CForeground();
    CForeground(const CForeground&) = delete;
    CForeground& operator=(const CForeground&) = delete;

  private:
    CInterrupt& m_interrupt;
};
