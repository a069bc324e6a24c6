// Ctrl-C: asks what is in the foreground to stop and ends the script that runs it.
#pragma once

#include <functional>
#include <mutex>
#include <thread>

class CInterrupt {
  public:
    // Takes over SIGINT for as long as it lives; there is one at a time.
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    // Asks what runs now to stop, from a thread of its own; null for nothing.
    void SetForeground(std::function<void()> stop);
    // Whether Ctrl-C came since the last Clear.
    bool IsPending() const;
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
