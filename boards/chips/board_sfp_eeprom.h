// A pluggable optical module: its serial ID, and below it "diagnostics", what a
// module of its own diagnostics has at its second address (SFF-8472, A2h). Other
// modules do not answer there. "decode" tells both.
#pragma once

#include <string>

#include "boards/chips/board_eeprom.h"
#include "decode/decoders.h"
#include "i2c/diag_sfp_eeprom.h"

class CBoardSfpEeprom : public CBoardEepromOf<CDiagSfpEepromDevice> {
  public:
    static constexpr const char* DIAGNOSTICS = "diagnostics";

    CBoardSfpEeprom(const std::string& name, const std::string& description,
                    const board_place_t& place, const i2c_eeprom_attr_t& attr, bool read_only,
                    const CDecoder& decoder);
};
