// The parameter EEPROM: holds the DIMM table of the board, which start-up code
// takes the settings of the memory modules from. Children, besides the EEPROM's:
// "prog-param-eeprom", "check-param-eeprom" and "erase-param-eeprom".
#pragma once

#include <string>

#include "i2c/diag_i2c_eeprom_device.h"

class CDiagParamEepromDevice : public CDiagI2cEepromDevice {
  public:
    CDiagParamEepromDevice(const std::string& name, const std::string& description, CI2cDevice* bus,
                           i2c_eeprom_attr_t* attr);
};
