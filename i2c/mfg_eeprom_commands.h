// The commands and the test of a manufacturing EEPROM.
#pragma once

#include <string>

#include "framework/diag_func.h"
#include "framework/diag_test.h"

class CDiagMfgEepromDevice;

class CShowManufEeprom : public CDiagFunc {
  public:
    CShowManufEeprom(const std::string& name, const std::string& description,
                     CDiagMfgEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagMfgEepromDevice* const m_pDev;
};

// Answers the serial number.
class CGetBoardSerial : public CDiagFunc {
  public:
    CGetBoardSerial(const std::string& name, const std::string& description,
                    CDiagMfgEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagMfgEepromDevice* const m_pDev;
};

// Answers the serial number and the revision state as a number.
class CGetBoardInfo : public CDiagFunc {
  public:
    CGetBoardInfo(const std::string& name, const std::string& description,
                  CDiagMfgEepromDevice* pDev);
    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    CDiagMfgEepromDevice* const m_pDev;
};

class CCheckMfgTest : public CDiagTest {
  public:
    CCheckMfgTest(const std::string& name, const std::string& description);
    bool TestSetup(CInMsg& in) override;
    ETestStatus TestRun(COutMsg& out) override;

  private:
    CDiagMfgEepromDevice* m_pDev = nullptr;  // found when the test runs
};
