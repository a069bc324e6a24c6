// The request to stop whatever one thread runs, from before it begins until it
// has ended: a test that has not begun begins stopped, a command that waits for
// its device gives up.
#pragma once

#include <atomic>

class CRunStop {
  public:
    // From any thread. Waits for devices look at it at once.
    void Request();
    bool IsRequested() const { return m_requested; }

    // Whether it was requested for what this thread runs.
    static bool IsRequestedHere();

    // Makes it that of the calling thread for a scope.
    class CScope {
      public:
        explicit CScope(const CRunStop& stop);
        ~CScope();
        CScope(const CScope&) = delete;
        CScope& operator=(const CScope&) = delete;

      private:
        const CRunStop* const m_outer;
    };

  private:
    std::atomic<bool> m_requested{false};
};
