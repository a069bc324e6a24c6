// A node that takes messages and writes to the log.
#pragma once

#include <cstdarg>
#include <string>

#include "framework/diag_obj.h"

class CDiagDevice;

class CDiagMenu : public CDiagObj {
  public:
    CDiagMenu(ENodeType type, const std::string& name, const std::string& description);
    ~CDiagMenu() override;

    // Handles one request and writes the answer; the first byte of an answer is an EResCode.
    virtual void HandleMsg(CInMsg& in, COutMsg& out);
    // Sends printf-style text to the log and the terminal. Where va_list is a char*, as on
    // powerpc64, a text that is the only argument would be taken for a list, so the classes
    // that devices, commands and tests derive from override the second alone and hide the
    // first. Through any other node, send such a text as const char*.
    virtual void SendLog(unsigned int logword, const char* fmt, va_list args) const
        __attribute__((format(printf, 3, 0)));
    virtual void SendLog(unsigned int logword, const char* fmt, ...) const
        __attribute__((format(printf, 3, 4)));
    // Takes a message that another node sent with SendMsg.
    virtual void ReceiveMail(CInMsg& mail);
    // Delivers `msg` to the node of this tree that its header names.
    virtual void SendMsg(CDiagMsg msg) const;

    // The nearest ancestor that is a device, or null.
    CDiagDevice* GetParentDevice() const;
};
