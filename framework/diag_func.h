// A command: declares its parameters as children in its constructor and does
// its work in Invoke.
#pragma once

#include <string>

#include "framework/diag_menu.h"

class CDiagFunc : public CDiagMenu {
  public:
    // Bit in the constructor's flags: the command reaches its parent device in
    // single accesses and may run beside others that do; tests are kept out
    // meanwhile. Without it the command has the device to itself, as a test has.
    static constexpr unsigned int SHARES_DEVICE = 1;

    CDiagFunc(const std::string& name, const std::string& description, unsigned int flags);
    ~CDiagFunc() override;

    // On a call message hands request and response to Invoke. An exception
    // that leaves Invoke is logged and answered with MSG_ERR_FAIL.
    void HandleMsg(CInMsg& in, COutMsg& out) override;
    void SendLog(unsigned int logword, const char* fmt, ...) const override
        __attribute__((format(printf, 3, 4)));

    // The command body: reads arguments in declared order, appends the answer byte.
    virtual void Invoke(CInMsg& in, COutMsg& out) = 0;

  private:
    const unsigned int m_flags;
};
