#include "boards/sim/sim_expander.h"

namespace {

// The kinds of registers, in the order in which they come for each port.
constexpr unsigned int KIND_INPUT = 0;
constexpr unsigned int KIND_OUTPUT = 1;
constexpr unsigned int KIND_POLARITY = 2;
constexpr unsigned int KIND_CONFIG = 3;
constexpr unsigned int KINDS = 4;

constexpr unsigned int PORT_WIDTH = 8;

}  // namespace

CSimExpander::CSimExpander(const sim_register_part_t& part, uint8_t addr)
    : CSimRegisters(part, addr),
      m_ports(static_cast<unsigned int>(part.registers.size()) / KINDS) {}

uint8_t CSimExpander::Register(unsigned int kind, unsigned int port) const {
    return static_cast<uint8_t>(kind * m_ports + port);
}

uint8_t CSimExpander::Level(unsigned int port) const {
    const unsigned int inputs = Value(Register(KIND_CONFIG, port));
    const unsigned int given = unsigned{m_given} >> PORT_WIDTH * port;
    const unsigned int latch = Value(Register(KIND_OUTPUT, port));
    return static_cast<uint8_t>((given & inputs) | (latch & ~inputs));
}

void CSimExpander::Refresh() {
    for (unsigned int port = 0; port < m_ports; ++port) {
        const unsigned int inverted = Value(Register(KIND_POLARITY, port));
        SetValue(Register(KIND_INPUT, port), static_cast<uint16_t>(Level(port) ^ inverted));
    }
}

uint16_t CSimExpander::Seen(const sim_outside_t&) const {
    unsigned int levels = 0;
    for (unsigned int port = 0; port < m_ports; ++port) {
        levels |= unsigned{Level(port)} << PORT_WIDTH * port;
    }
    return static_cast<uint16_t>(levels);
}

void CSimExpander::Give(const sim_outside_t&, uint16_t value) {
    m_given = value;
}

void CSimQuasiExpander::Refresh() {
    SetValue(PINS, Value(LATCH) & m_given);
}

uint16_t CSimQuasiExpander::Seen(const sim_outside_t&) const {
    return Value(PINS);
}

void CSimQuasiExpander::Give(const sim_outside_t&, uint16_t value) {
    m_given = static_cast<uint8_t>(value);
}
