// An EEPROM of the board whose contents have a meaning. Child, besides those of the
// library's device: "decode".
#pragma once

#include <string>

#include "boards/chips/board_eeprom.h"
#include "boards/chips/decode_cmd.h"

template <class Device>
class CDecodedEepromOf : public CBoardEepromOf<Device> {
  public:
    CDecodedEepromOf(const std::string& name, const std::string& description,
                     const board_place_t& place, const i2c_eeprom_attr_t& attr, bool read_only,
                     const CDecoder& decoder)
        : CBoardEepromOf<Device>(name, description, place, attr, read_only) {
        this->AddChild(new CDecodeCmd(*this, decoder), CDiagObj::NO_SORT);
    }
};
