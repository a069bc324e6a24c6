// One declared argument of a command or a test.
#pragma once

#include <string>

#include "framework/diag_menu.h"

class CDiagParam : public CDiagMenu {
  public:
    // `vt`: a value-type byte. `pt`: an EParamType, with PT_OPTIONAL where the
    // argument may be left out.
    CDiagParam(uint8_t vt, const std::string& name, const std::string& description, uint8_t pt)
        : CDiagMenu(TPARAM, name, description), m_vt(vt), m_pt(pt) {}

    // Appends the value-type byte and the parameter-type byte.
    void Query(COutMsg& out) override { out << m_vt << m_pt; }

    uint8_t GetValueType() const { return m_vt; }
    uint8_t GetParamType() const { return m_pt; }

  private:
    const uint8_t m_vt;
    const uint8_t m_pt;
};
