// The serial presence detect EEPROM of a DDR3 memory module. Child, besides the
// EEPROM's: "show-spd-info".
#pragma once

#include <string>

#include "framework/diag_func.h"
#include "i2c/ddr3_spd.h"
#include "i2c/diag_i2c_eeprom_device.h"

class CDiagSpdEepromDevice : public CDiagI2cEepromDevice {
  public:
    CDiagSpdEepromDevice(const std::string& n, const std::string& d, CI2cDevice* i2cDev,
                         i2c_eeprom_attr_t* attr);

    // The way to the chip must be open. False, and a log line, when a read failed;
    // what was not read stays as it was.
    bool ReadSPD(ddr3_spd_eeprom_t* spd);
    // Prints it byte by byte; the reserved bytes go to standard output.
    void ShowSPD(ddr3_spd_eeprom_t* spd) const;
};

class CShowSpdEepromCmd : public CDiagFunc {
  public:
    CShowSpdEepromCmd(const std::string& name, const std::string& description,
                      CDiagSpdEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagSpdEepromDevice* const m_pDev;
};
