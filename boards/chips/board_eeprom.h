// An EEPROM of the board: one of the library's EEPROM devices at its place, that
// makes up for what an operator must not run into: peeks and pokes open the
// path, "rw-test" tells which bytes it could not put back, a "read" that would
// move nothing is refused, and one that fails closes the path.
#pragma once

#include <string>

#include "boards/chips/board_place.h"
#include "boards/chips/eeprom_raw.h"
#include "i2c/diag_i2c_eeprom_device.h"

// An EEPROM with nothing but its bytes.
class CPlainEeprom : public CDiagI2cEepromDevice {
  public:
    CPlainEeprom(const std::string& name, const std::string& description, CI2cDevice* bus,
                 i2c_eeprom_attr_t* attr)
        : CDiagI2cEepromDevice(name, description, bus, attr, false, 0) {}
};

// Replaces the children of `eeprom` that the board does better; of a read-only
// one takes away what writes. Memory addresses have 16 bits: `attr` may describe
// 64 KiB at most.
void ReplaceEepromChildren(CDiagI2cEepromDevice& eeprom, const i2c_eeprom_attr_t& attr,
                           uint16_t xfer_size, bool read_only);

// `Device` is made from name, description, bus and attributes.
template <class Device>
class CBoardEepromOf : public Device, public CEepromRaw {
  public:
    CBoardEepromOf(const std::string& name, const std::string& description,
                   const board_place_t& place, i2c_eeprom_attr_t attr, bool read_only)
        : Device(name, description, place.bus, &attr),
          CEepromRaw(*this, this->m_xfer_size, read_only) {
        this->m_i2c_ch = place.channel;
        this->m_i2c_addr = place.addr;
        ReplaceEepromChildren(*this, attr, this->m_xfer_size, read_only);
    }
};

using CBoardEeprom = CBoardEepromOf<CPlainEeprom>;
