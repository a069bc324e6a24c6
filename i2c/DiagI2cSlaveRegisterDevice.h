// A chip on an I2C bus that is a table of registers, directly on a root bus or
// behind a channel of a switch: the register commands open the way to it and close
// it again. Below a switch it has the commands "enable-path" and "clr-path" too.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_register_device.h"
#include "i2c/path_commands.h"

class CI2cDevice;

class CDiagI2cSlaveRegisterDevice : public CDiagRegisterDevice {
  public:
    // `regt` is not copied, `i2cDev` not owned; both must outlive the device. A derived
    // class stores channel and address before the first transfer.
    CDiagI2cSlaveRegisterDevice(const std::string& n, const std::string& d, diag_regtable_st* regt,
                                CI2cDevice* i2cDev);

    // Open and close the way to the chip, as the switch's path mode demands.
    // True without a word when there is no way to open.
    bool EnablePath();
    bool ClearPath();

    // The dump of CDiagRegisterDevice with the path open.
    bool dumpRegs(uint32_t logType, std::string name) override;

  protected:
    int8_t m_i2c_ch = -1;       // of the switch; -1 = the chip needs no path
    uint8_t m_i2c_addr = 0xFF;  // 7 bits; 0xFF = not yet set
    CI2cDevice* m_i2cDev;
};

using CEnableI2cPathCmd = CEnablePathCmdOf<CDiagI2cSlaveRegisterDevice>;
using CClearI2cPathCmd = CClearPathCmdOf<CDiagI2cSlaveRegisterDevice>;
