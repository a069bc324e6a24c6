#include "boards/mdio_sim/phy.h"

#include <linux/mii.h>

namespace {

// Those that linux/mii.h does not name.
constexpr uint16_t NEXT_PAGE = 0x07;
constexpr uint16_t FIRST_VENDOR_REGISTER = 0x10;
constexpr uint16_t BMCR_UNIDIRECTIONAL = 0x0020;
constexpr uint16_t BMSR_PREAMBLE_SUPPRESSION = 0x0040;

constexpr uint16_t CONTROL_AT_RESET = BMCR_ANENABLE | BMCR_FULLDPLX | BMCR_SPEED1000;
constexpr uint16_t CAPABILITIES = BMSR_100FULL | BMSR_100HALF | BMSR_10FULL | BMSR_10HALF |
                                  BMSR_ESTATEN | BMSR_PREAMBLE_SUPPRESSION | BMSR_ANEGCAPABLE |
                                  BMSR_ERCAP;
constexpr uint16_t NEXT_PAGE_AT_RESET = 0x2001;  // an empty message page

// What the partner and the negotiation say while there is a link.
constexpr uint16_t PARTNER_ABILITY =
    LPA_NPAGE | LPA_LPACK | ADVERTISE_CSMA | ADVERTISE_ALL | ADVERTISE_PAUSE_CAP;
constexpr uint16_t EXPANSION = EXPANSION_NWAY | EXPANSION_ENABLENPAGE | EXPANSION_NPCAPABLE;
constexpr uint16_t GIGABIT_STATUS =
    LPA_1000LOCALRXOK | LPA_1000REMRXOK | LPA_1000FULL | LPA_1000HALF;

// The bits of a register that a write changes. The self-clearing ones of the control
// register do something and never stay.
uint16_t WritableBits(uint16_t reg) {
    switch (reg) {
        case MII_BMCR:
            return BMCR_LOOPBACK | BMCR_SPEED100 | BMCR_ANENABLE | BMCR_PDOWN | BMCR_ISOLATE |
                   BMCR_FULLDPLX | BMCR_CTST | BMCR_SPEED1000 | BMCR_UNIDIRECTIONAL;
        case MII_ADVERTISE:
            return static_cast<uint16_t>(~ADVERTISE_LPACK);
        case NEXT_PAGE:
            return 0xB7FF;  // all but the acknowledgement and the toggle
        case MII_CTRL1000:
            return 0xFF00;
        default:
            return reg >= FIRST_VENDOR_REGISTER ? 0xFFFF : 0;
    }
}

}  // namespace

CPhy::CPhy(uint32_t identifier) {
    m_regs[MII_PHYSID1] = static_cast<uint16_t>(identifier >> 16);
    m_regs[MII_PHYSID2] = static_cast<uint16_t>(identifier);
    Reset();
}

uint16_t CPhy::Read(uint16_t reg) {
    switch (reg) {
        case MII_BMSR:
            return ReadStatus();
        case MII_LPA:
            return IsNegotiated() ? PARTNER_ABILITY : 0;
        case MII_EXPANSION:
            return IsNegotiated() ? EXPANSION : EXPANSION_ENABLENPAGE;
        case MII_STAT1000:
            return IsNegotiated() ? GIGABIT_STATUS : 0;
        default:
            return m_regs[reg];
    }
}

void CPhy::Write(uint16_t reg, uint16_t value) {
    if (reg == MII_BMCR) {
        WriteControl(value);
        return;
    }
    const uint16_t writable = WritableBits(reg);
    m_regs[reg] = static_cast<uint16_t>((m_regs[reg] & ~writable) | (value & writable));
}

void CPhy::Reset() {
    const uint16_t high = m_regs[MII_PHYSID1];
    const uint16_t low = m_regs[MII_PHYSID2];
    m_regs = {};
    m_regs[MII_PHYSID1] = high;
    m_regs[MII_PHYSID2] = low;
    m_regs[MII_BMCR] = CONTROL_AT_RESET;
    m_regs[MII_BMSR] = CAPABILITIES;
    m_regs[MII_ADVERTISE] = ADVERTISE_CSMA | ADVERTISE_ALL;
    m_regs[NEXT_PAGE] = NEXT_PAGE_AT_RESET;
    m_regs[MII_CTRL1000] = ADVERTISE_1000FULL | ADVERTISE_1000HALF;
    m_regs[MII_ESTATUS] = ESTATUS_1000_TFULL | ESTATUS_1000_THALF;
}

// Whatever makes the PHY negotiate anew takes the link away for a moment. It is back
// before the next access: only the latch tells.
void CPhy::WriteControl(uint16_t value) {
    if ((value & BMCR_RESET) != 0) {
        Reset();
        m_link_dropped = true;
        return;
    }
    const uint16_t old = m_regs[MII_BMCR];
    m_regs[MII_BMCR] = value & WritableBits(MII_BMCR);
    const uint16_t changed = old ^ m_regs[MII_BMCR];
    const bool restarted = (value & BMCR_ANRESTART) != 0 && IsNegotiated();
    if (restarted || (changed & (BMCR_PDOWN | BMCR_ANENABLE)) != 0) {
        m_link_dropped = true;
    }
}

uint16_t CPhy::ReadStatus() {
    uint16_t status = m_regs[MII_BMSR];
    if (HasLink() && !m_link_dropped) {
        status |= BMSR_LSTATUS;
    }
    if (IsNegotiated()) {
        status |= BMSR_ANEGCOMPLETE;
    }
    m_link_dropped = false;
    return status;
}

bool CPhy::HasLink() const {
    return (m_regs[MII_BMCR] & BMCR_PDOWN) == 0;
}

bool CPhy::IsNegotiated() const {
    return HasLink() && (m_regs[MII_BMCR] & BMCR_ANENABLE) != 0;
}
