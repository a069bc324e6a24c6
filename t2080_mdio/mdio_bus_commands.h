// The commands of an MDIO bus.
#pragma once

#include <string>

#include "framework/diag_func.h"

class CMdioBusInit : public CDiagFunc {
  public:
    CMdioBusInit(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};

class CMdioBusWrite : public CDiagFunc {
  public:
    CMdioBusWrite(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};

// Answers the data word after a failure too; it has no meaning then.
class CMdioBusRead : public CDiagFunc {
  public:
    CMdioBusRead(const std::string& name, const std::string& description);
    void Invoke(CInMsg& in, COutMsg& out) override;
};
