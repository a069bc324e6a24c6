// A device with numbered ports of 8 bits, and the commands "read-port" and
// "write-port". Board code supplies the access to ports and registers.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_func.h"
#include "framework/diag_register_device.h"

class CDiagIoDevice : public CDiagRegisterDevice {
  public:
    CDiagIoDevice(const std::string& n, const std::string& d, diag_regtable_st* regt);

    // Both: nonzero when it worked. Only the bits of `msk` may change.
    virtual uint32_t ReadIoPort(int port, uint8_t* val) = 0;
    virtual uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) = 0;

  protected:
    // Board code's own.
    uint8_t m_num_ports = 0;
    uint8_t m_port_width = 0;
};

class CReadPortCmd : public CDiagFunc {
  public:
    CReadPortCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};

class CWritePortCmd : public CDiagFunc {
  public:
    CWritePortCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};
