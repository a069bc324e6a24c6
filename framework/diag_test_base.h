// What every kind of test shares: status, progress and the request to stop.
#pragma once

#include <atomic>
#include <string>

#include "framework/diag_menu.h"

class CDiagTestBase : public CDiagMenu {
  public:
    CDiagTestBase(const std::string& name, const std::string& description);
    ~CDiagTestBase() override;

    // Forgets the result of the last run; a test that runs is left alone.
    void Reset() override;
    void SendLog(unsigned int logword, const char* fmt, ...) const override
        __attribute__((format(printf, 3, 4)));

    // To be called between units of work; false when a stop has been requested.
    bool ProgressCb();

    ETestStatus GetStatus() const { return m_status; }
    // Work done and work in all, in the test's own units; a total of 0 means unknown.
    uint64_t GetProgressDone() const { return m_progress_done; }
    uint64_t GetProgressTotal() const { return m_progress_total; }

  protected:
    friend class CTestRunner;

    std::atomic<ETestStatus> m_status{DS_UNTESTED};
    std::atomic<uint64_t> m_progress_done{0};
    std::atomic<uint64_t> m_progress_total{0};
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_stop_requested{false};
};
