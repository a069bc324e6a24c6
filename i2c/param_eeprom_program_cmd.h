// "prog-param-eeprom": writes the image of a DIMM table.
#pragma once

#include <cstdint>
#include <string>

#include "i2c/param_eeprom_cmd.h"

class CParamEepromCmdWrite : public virtual CParamEepromCmd {
  public:
    CParamEepromCmdWrite(const std::string& name, const std::string& description, bool isSWAL,
                         CDiagParamEepromDevice* dev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    void writeDimmVersionNum();
    void writeSignature();
    void writeManufacturerId(uint32_t i);
    void writeDimmPartNum(uint32_t i);
    void reportIllegal(const char* part_number, uint32_t first, uint32_t end) const;
    void writeRevisions(uint32_t i);
    void writeNumRegisters(uint32_t i);
    void writeAddrValues(uint32_t i);
    void writeCRC();
    // What a run that did not come to its end leaves behind.
    void reportIncomplete(EEnd end) const;
};
