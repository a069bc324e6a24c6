#include "i2c/diag_param_eeprom.h"

#include "i2c/param_eeprom_check_cmd.h"
#include "i2c/param_eeprom_erase_cmd.h"
#include "i2c/param_eeprom_program_cmd.h"

CDiagParamEepromDevice::CDiagParamEepromDevice(const std::string& name,
                                               const std::string& description, CI2cDevice* bus,
                                               i2c_eeprom_attr_t* attr)
    : CDiagI2cEepromDevice(name, description, bus, attr, false, 0) {
    AddChild(new CParamEepromCmdWrite(
                 "prog-param-eeprom",
                 "Writes a Dimm table on parameter eeprom specified by path of XML file passed",
                 false, this),
             NO_SORT);
    AddChild(new CParamEepromCmdCheck(
                 "check-param-eeprom",
                 "Checks the Dimm table on parameter eeprom specified by path of XML file passed",
                 false, this),
             NO_SORT);
    AddChild(new CParamEepromCmdErase("erase-param-eeprom",
                                      "Erases the Dimm table on parameter eeprom", false, this),
             NO_SORT);
}
