// The array "memory" of a board's EEPROM: opens the path for every peek and
// poke, and closes it.
#pragma once

#include "i2c/i2c_eeprom_memory.h"

class CBoardEepromMemory : public CI2cEepromMemory {
  public:
    // With `one_address_byte` the position behind the last byte, which the array
    // has too, wraps to the first one as in the chip: its address would not fit
    // the byte, and where several chips share slave addresses reach another.
    CBoardEepromMemory(CDiagI2cEepromDevice* dev, uint32_t size, bool rd_only,
                       bool one_address_byte)
        : CI2cEepromMemory(dev, size, rd_only), m_one_address_byte(one_address_byte) {}

    void HandleMsg(CInMsg& in, COutMsg& out) override;
    void Set(uint64_t addr, const byte_t& value) override {
        CI2cEepromMemory::Set(InChip(addr), value);
    }
    unsigned char Get(uint64_t addr) override { return CI2cEepromMemory::Get(InChip(addr)); }

  private:
    uint64_t InChip(uint64_t addr) const {
        return m_one_address_byte && addr == GetEndAddr() ? 0 : addr;
    }

    const bool m_one_address_byte;
};
