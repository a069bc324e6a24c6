// One chip at one address of an I2C bus, directly on a root bus or behind a
// channel of a switch. Below a switch it has the commands "enable-path" and
// "clr-path", which open and close the way to it.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_device.h"
#include "i2c/path_commands.h"

class CI2cDevice;

class CDiagI2cSlaveDevice : public CDiagDevice {
  public:
    // `i2cDev` is the root bus or the switch that the chip hangs on; it is not
    // owned. A derived class stores channel and address before the first transfer.
    CDiagI2cSlaveDevice(const std::string& n, const std::string& d, CI2cDevice* i2cDev);

    // Open and close the way to the chip, as the switch's path mode demands.
    // True without a word when there is no way to open.
    bool EnablePath();
    bool ClearPath();

  protected:
    int8_t m_i2c_ch = -1;       // of the switch; -1 = the chip needs no path
    uint8_t m_i2c_addr = 0xFF;  // 7 bits; 0xFF = not yet set
    CI2cDevice* m_i2cDev;
};

using CEnablePathCmd = CEnablePathCmdOf<CDiagI2cSlaveDevice>;
using CClearPathCmd = CClearPathCmdOf<CDiagI2cSlaveDevice>;
