#include "boards/devicetree/i2c_wire.h"

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

CI2cWire::CI2cWire(CSimBus& bus)
    : m_bus(bus),
      m_root(bus),
      m_menu(bus),
      m_segment(bus.Segment()),
      m_channel(-1),
      m_folder(bus.GetName()),
      m_above(nullptr) {}

CI2cWire::CI2cWire(const CI2cWire& above, CDiagI2cSwitch& mux, uint8_t addr, int8_t ch,
                   CSimSegment& segment)
    : m_bus(mux),
      m_root(above.m_root),
      m_menu(*mux.getChannelMenu(ch)),
      m_segment(segment),
      m_channel(ch),
      m_folder(above.m_folder / toString(addr, VF_HEX | VF_PAD) / ("ch" + std::to_string(ch))),
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

const CDeviceTreeNode* CI2cWire::ClaimantOf(uint8_t addr) const {
    const auto claim = m_claims.find(addr);
    return claim == m_claims.end() ? nullptr : claim->second;
}
