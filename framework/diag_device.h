// A device: the node that commands and tests act on.
#pragma once

#include <atomic>
#include <string>

#include "framework/diag_menu.h"

class CDiagDevice : public CDiagMenu {
  public:
    CDiagDevice(const std::string& name, const std::string& description, ENodeType type);
    ~CDiagDevice() override;

    // Forgets the test status and the failures, then calls DevReset.
    void Reset() override;
    void SendLog(unsigned int logword, const char* fmt, ...) const override
        __attribute__((format(printf, 3, 4)));

    // Hooks of board code; here they do nothing and report no interrupt.
    virtual void CauseInterrupts(uint8_t* mask);
    virtual bool PollInterrupts(uint8_t* mask, msTime_t timeout);
    virtual void DevReset();

    virtual void CountFailure();
    virtual void SetTestStatus(ETestStatus status);

    // A device that is not operational refuses work; devices start operational.
    void SetOperational(bool operational) { m_operational = operational; }
    bool CheckOperational() const { return m_operational; }

    ETestStatus GetTestStatus() const { return m_status; }
    unsigned int GetFailures() const { return m_failures; }

  private:
    std::atomic<bool> m_operational{true};
    std::atomic<ETestStatus> m_status{DS_UNTESTED};
    std::atomic<unsigned int> m_failures{0};
};
