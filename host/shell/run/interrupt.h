// Ctrl-C: asks what is in the foreground to stop and ends the script that runs it.
// SIGTERM and SIGHUP, from a terminal that is closed, do the same for good: tests
// have memories to restore before the shell may end.
#pragma once

#include <functional>
#include <mutex>
#include <thread>

class CInterrupt {
  public:
    // Takes over the signals for as long as it lives; there is one at a time.
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    // Asks what runs now to stop, from a thread of its own; null for nothing.
    void SetForeground(std::function<void()> stop);
    // Whether Ctrl-C came since the last Clear, or the end.
    bool IsPending() const;
    // Whether the shell is to end.
    bool IsEnd() const;
    void Clear();
    // A descriptor that is readable while Ctrl-C is pending: to be polled beside
    // the input, since a signal may come just before a read begins to wait.
    int Descriptor() const;

  private:
    void Watch();

    std::mutex m_lock;
    std::function<void()> m_foreground;
    std::thread m_watcher;
};

// Tells the interrupt what runs, for a scope.
class CForeground {
  public:
    CForeground(CInterrupt& interrupt, std::function<void()> stop);
    ~CForeground();
    CForeground(const CForeground&) = delete;
    CForeground& operator=(const CForeground&) = delete;

  private:
    CInterrupt& m_interrupt;
};
