#include "boards/sim/sim_mux.h"

#include <algorithm>
#include <array>
#include <exception>

#include "framework/diag_exception.h"

namespace {

constexpr std::array<sim_mux_part_t, 8> PARTS{{
    // name, channels, kind, power-on value, enable bit
    {"pca9540", 2, SIM_MUX_ENABLE_BIT, 0x00, 0x04},
    {"pca9542", 2, SIM_MUX_ENABLE_BIT, 0x00, 0x04},
    {"pca9543", 2, SIM_MUX_BIT_MASK, 0x00, 0},
    {"pca9544", 4, SIM_MUX_ENABLE_BIT, 0x00, 0x04},
    {"pca9545", 4, SIM_MUX_BIT_MASK, 0x00, 0},
    {"pca9546", 4, SIM_MUX_BIT_MASK, 0x00, 0},
    {"pca9547", 8, SIM_MUX_ENABLE_BIT, 0x08, 0x08},  // channel 0 is open at power-on
    {"pca9548", 8, SIM_MUX_BIT_MASK, 0x00, 0},
}};

// The bits of the control register that a write sets; the rest are interrupt
// inputs, idle here, or do not exist, and read as 0.
uint8_t WritableBits(const sim_mux_part_t& part) {
    return static_cast<uint8_t>(part.kind == SIM_MUX_ENABLE_BIT
                                    ? part.enable_bit | (part.enable_bit - 1U)
                                    : (1U << part.channels) - 1U);
}

bool IsOpen(const sim_mux_part_t& part, uint8_t control, size_t ch) {
    if (part.kind == SIM_MUX_BIT_MASK) {
        return ((control >> ch) & 1U) != 0;
    }
    return (control & part.enable_bit) != 0 && (control & (part.enable_bit - 1U)) == ch;
}

}  // namespace

std::span<const sim_mux_part_t> SimMuxParts() {
    return PARTS;
}

const sim_mux_part_t* FindSimMuxPart(std::string_view name) {
    const auto* part = std::find_if(PARTS.begin(), PARTS.end(),
                                    [name](const auto& entry) { return name == entry.name; });
    return part != PARTS.end() ? &*part : nullptr;
}

CSimMux::CSimMux(const sim_mux_part_t& part, uint8_t addr)
    : m_part(part), m_addr(addr), m_control(part.power_on), m_channels(part.channels) {
    Connect();
}

bool CSimMux::Start(uint8_t addr, bool read) {
    m_addressed = addr == m_addr;
    bool ack = m_addressed;
    for (CChannel& channel : m_channels) {
        channel.takes_part = channel.open && channel.segment.Start(addr, read);
        ack = ack || channel.takes_part;
    }
    return ack;
}

bool CSimMux::WriteByte(uint8_t value) {
    bool ack = m_addressed;
    if (m_addressed) {
        m_control = value & WritableBits(m_part);
    }
    for (CChannel& channel : m_channels) {
        if (channel.takes_part && channel.segment.WriteByte(value)) {
            ack = true;
        }
    }
    return ack;
}

uint8_t CSimMux::ReadByte() {
    uint8_t wire = m_addressed ? m_control : 0xFF;
    for (CChannel& channel : m_channels) {
        if (channel.takes_part) {
            wire = static_cast<uint8_t>(wire & channel.segment.ReadByte());
        }
    }
    return wire;
}

// The stop condition still passes through the channels that were open.
void CSimMux::Stop() {
    std::exception_ptr fault;
    for (CChannel& channel : m_channels) {
        channel.takes_part = false;
        if (channel.open) {
            try {
                channel.segment.Stop();
            } catch (const CDiagException&) {
                fault = std::current_exception();
            }
        }
    }
    m_addressed = false;
    Connect();
    if (fault) {
        std::rethrow_exception(fault);
    }
}

void CSimMux::Connect() {
    for (size_t ch = 0; ch < m_channels.size(); ++ch) {
        m_channels[ch].open = IsOpen(m_part, m_control, ch);
    }
}
