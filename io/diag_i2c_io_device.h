// A chip on an I2C bus with numbered ports of 8 bits. "read-port" and "write-port" open
// the way to it and close it again. Board code supplies the access to ports and
// registers.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_func.h"
#include "i2c/DiagI2cSlaveRegisterDevice.h"

class CDiagI2cIoDevice : public CDiagI2cSlaveRegisterDevice {
  public:
    CDiagI2cIoDevice(const std::string& n, const std::string& d, diag_regtable_st* regt,
                     CI2cDevice* i2cDev);

    // Both: nonzero when it worked. Only the bits of `msk` may change. The way to the
    // chip is open.
    virtual uint32_t ReadIoPort(int port, uint8_t* val) = 0;
    virtual uint32_t WriteIoPort(int port, uint8_t val, uint8_t msk) = 0;

  protected:
    // Board code's own.
    uint8_t m_num_ports = 0;
    uint8_t m_port_width = 0;
};

class CI2cReadPortCmd : public CDiagFunc {
  public:
    CI2cReadPortCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};

class CI2cWritePortCmd : public CDiagFunc {
  public:
    CI2cWritePortCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};
