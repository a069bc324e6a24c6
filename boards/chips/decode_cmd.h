// Tells in words what an EEPROM holds. Fails when the record is not sound, after telling
// all of it.
#pragma once

#include <vector>

#include "decode/decoders.h"
#include "framework/diag_func.h"
#include "i2c/diag_i2c_eeprom_device.h"

class CDecodeCmd : public CDiagFunc {
  public:
    CDecodeCmd(CDiagI2cEepromDevice& eeprom, const CDecoder& decoder);
    void Invoke(CInMsg& in, COutMsg& out) override;

  protected:
    // Reads what is to be decoded; the way to the chip is open. False, and a log line,
    // when something cannot be read: `image` then has what can be decoded without it,
    // or nothing.
    virtual bool ReadImage(std::vector<byte_t>& image);

    CDiagI2cEepromDevice& m_eeprom;
    const CDecoder& m_decoder;

  private:
    bool Tell(const std::vector<byte_t>& image) const;
};
