// The EEPROM commands "read" and "write-byte".
#pragma once

#include <string>

#include "framework/diag_func.h"

// Prints memory as a hex dump, from an address on for a length, else to the end.
class CDiagI2cEepromReadCmd : public CDiagFunc {
  public:
    CDiagI2cEepromReadCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};

class CDiagI2cEepromWriteCmd : public CDiagFunc {
  public:
    CDiagI2cEepromWriteCmd(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};
