// Ctrl-C: asks the test in the foreground to stop and ends the script that runs it.
#pragma once

#include <mutex>
#include <thread>

class CDiagMenu;

class CInterrupt {
  public:
    // Takes over SIGINT for as long as it lives; there is one at a time.
    CInterrupt();
    ~CInterrupt();
    CInterrupt(const CInterrupt&) = delete;
    CInterrupt& operator=(const CInterrupt&) = delete;

    // The node that runs now and is asked to stop; null for none.
    void SetForeground(CDiagMenu* node);
    // Whether Ctrl-C came since the last Clear.
    bool IsPending() const;
    void Clear();
    // A descriptor that is readable while Ctrl-C is pending: to be polled beside
    // the input, since a signal may come just before a read begins to wait.
    int Descriptor() const;

  private:
    void Watch();

    std::mutex m_lock;
    CDiagMenu* m_foreground = nullptr;
    std::thread m_watcher;
};

// Tells the interrupt which node runs, for a scope.
class CForeground {
  public:
    CForeground(CInterrupt& interrupt, CDiagMenu& node) : m_interrupt(interrupt) {
        m_interrupt.SetForeground(&node);
    }
    ~CForeground() { m_interrupt.SetForeground(nullptr); }
    CForeground(const CForeground&) = delete;
    CForeground& operator=(const CForeground&) = delete;

  private:
    CInterrupt& m_interrupt;
};
