// The manufacturing EEPROM of a board: says what the board is. Children, besides
// the EEPROM's: "show-manuf-info", "get-serial-num", "get-board-info" and the test
// "chk-mfg".
#pragma once

#include <string>

#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/mfg_inventory.h"

class CDiagMfgEepromDevice : public CDiagI2cEepromDevice {
  public:
    CDiagMfgEepromDevice(const std::string& name, const std::string& desc, CI2cDevice* bus,
                         i2c_eeprom_attr_t* attr);

    // Reads the record and checks its checksum; logs what is wrong. The way to the
    // chip must be open. Sets `ok` when the record is good, else leaves it alone.
    bool ReadNCheck(CTarnInventory* rec, bool& ok);
    // From the first printable character on, blanks not counted, to the end of the
    // field; empty when there is none.
    static std::string ExtractSerialNumber(CTarnInventory& rec);
};
