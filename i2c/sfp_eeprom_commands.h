// The commands of a module's serial-ID EEPROM.
#pragma once

#include <string>

#include "framework/diag_func.h"

class CDiagSfpEepromDevice;

class CShowSfpEeprom : public CDiagFunc {
  public:
    CShowSfpEeprom(const std::string& name, const std::string& description,
                   CDiagSfpEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagSfpEepromDevice* const m_pDev;
};

// Answers 1 for a module of 1 Gbit/s, 10 for one of 10.
class CSfpType : public CDiagFunc {
  public:
    CSfpType(const std::string& name, const std::string& description, CDiagSfpEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagSfpEepromDevice* const m_pDev;
};
