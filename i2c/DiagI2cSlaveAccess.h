// Access to the single-byte registers of a slave for an object that is no
// slave's tree node itself, but holds one of these. Log texts go out in the
// name of that object.
#pragma once

#include <cstdint>

#include "framework/diag_types.h"

class CDiagMenu;
class CI2cDevice;

class CDiagI2cSlaveAccess {
  public:
    // Neither is owned. `i2cDev` is a root bus or a CDiagI2cSwitch.
    CDiagI2cSlaveAccess(CDiagMenu* papa, CI2cDevice* i2cDev);

    // `ch`: channel of the switch, -1 for none; `addr`: 7-bit slave address.
    void Configure(int8_t ch, int8_t addr);

    // Open and close the way to the slave; to be called round register accesses.
    bool EnablePath();
    bool ClearPath();

    // Each moves one byte under the bus's lock. False, and a log line, when the
    // transfer failed.
    bool ReadReg(uint8_t rn, uint8_t* pData);
    bool WriteReg(uint8_t rn, uint8_t data);
    bool I2cXfer(uint8_t rn, bool wr, byte_t* pData);

  protected:
    int8_t m_i2c_ch = -1;
    uint8_t m_i2c_addr = 0xFF;
    CDiagMenu* m_papa;
    CI2cDevice* m_i2cDev;
};
