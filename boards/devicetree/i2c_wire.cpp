#include "boards/devicetree/i2c_wire.h"

#include "boards/chips/mux_chip.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

CI2cWire::CI2cWire(CRootBus& bus, const CI2cWire* above)
    : m_bus(bus),
      m_root(bus),
      m_menu(bus),
      m_channel(-1),
      m_folder(bus.GetName()),
      m_above(above) {}

CI2cWire::CI2cWire(const CI2cWire& above, CDiagI2cSwitch& mux, int8_t ch)
    : m_bus(mux),
      m_root(above.m_root),
      m_menu(*mux.getChannelMenu(ch)),
      m_channel(ch),
      m_folder(above.m_folder / toString(mux.getI2cAddr(), VF_HEX | VF_PAD) /
               ("ch" + std::to_string(ch))),
      m_above(&above) {}

void CI2cWire::Claim(uint8_t addr, unsigned int count, const CDeviceTreeNode& node) {
    for (unsigned int taken = addr; taken < addr + count; ++taken) {
        if (const CDeviceTreeNode* other = ClaimantOf(static_cast<uint8_t>(taken))) {
            throw CDiagException("%s: address 0x%02x is already taken by %s", node.Path().c_str(),
                                 taken, other->Path().c_str());
        }
    }
    for (unsigned int taken = addr; taken < addr + count; ++taken) {
        m_claims.emplace(static_cast<uint8_t>(taken), &node);
    }
}

void CI2cWire::Name(const CDeviceTreeNode& claimant, const std::string& name) const {
    for (const auto& [addr, node] : m_claims) {
        if (node != &claimant) {
            continue;
        }
        if (auto* mux = dynamic_cast<CMuxChip*>(&m_bus)) {
            mux->SetNameAt(static_cast<uint8_t>(m_channel), addr, name);
        } else {
            m_root.SetNameAt(addr, name);
        }
    }
}

const CDeviceTreeNode* CI2cWire::ClaimantOf(uint8_t addr) const {
    const auto claim = m_claims.find(addr);
    return claim == m_claims.end() ? nullptr : claim->second;
}
