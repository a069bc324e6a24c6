// The serial-ID EEPROM of an SFP or SFP+ module. Children, besides the EEPROM's:
// "show-eeprom-info" and "type".
#pragma once

#include <string>

#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/sfp_serial_id.h"

class CDiagSfpEepromDevice : public CDiagI2cEepromDevice {
  public:
    CDiagSfpEepromDevice(const std::string& n, const std::string& d, CI2cDevice* i2cDev,
                         i2c_eeprom_attr_t* attr);

    // The way to the chip must be open. False, and a log line, when a read failed;
    // what was not read stays as it was.
    bool ReadContent(sfp_serial_id_t* id);
};
