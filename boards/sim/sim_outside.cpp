#include "boards/sim/sim_outside.h"

#include "framework/diag_value.h"

namespace {

// In a message a signed value is the unsigned one of the same bits.
template <class T>
class COutsideValue : public CDiagValue<T> {
  public:
    COutsideValue(CSimRegisters& chip, const sim_outside_t& what)
        : CDiagValue<T>(what.name, what.desc, false, what.vt), m_chip(chip), m_what(what) {}

    void Set(const T& value) override { m_chip.SetOutside(m_what, value); }
    T Get() override { return static_cast<T>(m_chip.GetOutside(m_what)); }

  private:
    CSimRegisters& m_chip;
    const sim_outside_t& m_what;
};

CDiagObj* CreateValue(CSimRegisters& chip, const sim_outside_t& what) {
    if ((what.vt & VF_TYPE_MASK) == VT_UINT8) {
        return new COutsideValue<uint8_t>(chip, what);
    }
    return new COutsideValue<uint16_t>(chip, what);
}

}  // namespace

std::unique_ptr<CDiagMenu> CreateOutsideMenu(const std::string& name, CSimRegisters& chip) {
    auto menu =
        std::make_unique<CDiagMenu>(TMENU, name, "outside of the " + std::string(chip.PartName()));
    for (const sim_outside_t& what : chip.Outside()) {
        menu->AddChild(CreateValue(chip, what), CDiagObj::NO_SORT);
    }
    return menu;
}
