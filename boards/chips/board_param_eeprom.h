// The parameter EEPROM of a board. Where the package's default table is not
// installed, it takes the one that came with the board's description.
#pragma once

#include <filesystem>
#include <string>

#include "boards/chips/board_eeprom.h"
#include "i2c/diag_param_eeprom.h"

class CBoardParamEeprom : public CBoardEepromOf<CDiagParamEepromDevice> {
  public:
    // `table`: an XML file; it need not exist.
    CBoardParamEeprom(const std::string& name, const std::string& description,
                      const board_place_t& place, i2c_eeprom_attr_t attr, bool read_only,
                      const std::filesystem::path& table);
};
