// An EEPROM's bytes as an array to peek and poke. The way to the chip must be
// open: an element is moved in one transfer, whatever the path.
#pragma once

#include <cstdint>

#include "framework/diag_array.h"

class CDiagI2cEepromDevice;

class CI2cEepromMemory : public CDiagAddrArray<unsigned char> {
  public:
    // Positions run from 0 to `size`, inclusive. Bit 16 and up of a position
    // are ignored.
    CI2cEepromMemory(CDiagI2cEepromDevice* dev, uint32_t size, bool rd_only);

    // Both throw CDiagException when the transfer failed.
    void Set(uint64_t addr, const byte_t& value) override;
    unsigned char Get(uint64_t addr) override;

  protected:
    CDiagI2cEepromDevice* m_pDev;  // never null
};
