// "erase-param-eeprom": overwrites the stored image with 0xFF.
#pragma once

#include <cstdint>
#include <string>

#include "i2c/param_eeprom_cmd.h"

class CParamEepromCmdErase : public virtual CParamEepromCmd {
  public:
    CParamEepromCmdErase(const std::string& name, const std::string& description, bool isSWAL,
                         CDiagParamEepromDevice* dev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    void eraseEeprom(uint32_t length);
    void reportStopped() const;
};
