#include "boards/sim/sim_registers.h"

#include "framework/diag_types.h"

namespace {

constexpr uint8_t NOTHING = 0xFF;  // nobody pulls the line low

unsigned int BytesOf(const sim_outside_t& what) {
    return (what.vt & VF_TYPE_MASK) == VT_UINT8 ? 1 : 2;
}

}  // namespace

CSimRegisters::CSimRegisters(const sim_register_part_t& part, uint8_t addr)
    : m_part(part), m_addr(addr), m_by_pointer(POINTERS, NONE), m_written_pointer(POINTERS, NONE) {
    for (const sim_register_t& reg : part.registers) {
        const auto at = static_cast<uint16_t>(m_values.size());
        const int write_pointer = reg.write_pointer == -1 ? reg.pointer : reg.write_pointer;
        m_by_pointer[reg.pointer] = at;
        m_written_pointer[static_cast<uint8_t>(write_pointer)] = at;
        m_values.push_back(reg.reset);
    }
}

uint16_t CSimRegisters::GetOutside(const sim_outside_t& what) {
    const std::lock_guard guard(m_lock);
    Refresh();
    return Seen(what);
}

void CSimRegisters::SetOutside(const sim_outside_t& what, uint16_t value) {
    const std::lock_guard guard(m_lock);
    Refresh();
    Give(what, value);
}

bool CSimRegisters::Start(uint8_t addr, bool read) {
    m_has_pointer = read || m_part.pointer == SIM_POINTER_NONE;
    m_byte = 0;
    m_shift = 0;
    if (addr != m_addr) {
        return false;
    }
    const std::lock_guard guard(m_lock);
    Refresh();
    return true;
}

bool CSimRegisters::WriteByte(uint8_t value) {
    if (!m_has_pointer) {
        m_pointer = value;
        m_has_pointer = true;
        return true;
    }
    const uint16_t at = m_written_pointer[m_pointer];
    if (at == NONE) {
        Advance();  // taken, and of no effect
        return true;
    }
    const sim_register_t& reg = m_part.registers[at];
    m_shift = static_cast<uint16_t>(m_shift << 8 | value);
    if (++m_byte == reg.bytes) {
        const std::lock_guard guard(m_lock);
        const unsigned int kept = m_values[at] & ~unsigned{reg.writable};
        m_values[at] = static_cast<uint16_t>((kept & (~unsigned{reg.clearable} | m_shift)) |
                                             (m_shift & reg.writable));
        HaveWritten(reg.pointer);
        Advance();
    }
    return true;
}

uint8_t CSimRegisters::ReadByte() {
    const uint16_t at = m_by_pointer[m_pointer];
    if (at == NONE) {
        Advance();
        return NOTHING;
    }
    const sim_register_t& reg = m_part.registers[at];
    if (m_byte == 0) {
        const std::lock_guard guard(m_lock);
        m_shift = reg.write_only ? uint16_t{0} : m_values[at];
        if (reg.clears) {
            m_values[at] = 0;
        }
        HaveRead(reg.pointer);
    }
    const auto value = static_cast<uint8_t>(m_shift >> 8 * (reg.bytes - 1 - m_byte));
    if (++m_byte == reg.bytes) {
        Advance();
    }
    return value;
}

uint16_t CSimRegisters::Seen(const sim_outside_t& what) const {
    unsigned int value = 0;
    for (unsigned int byte = 0; byte < BytesOf(what);) {
        const uint16_t at = m_by_pointer[what.pointer + byte];
        const unsigned int bytes = m_part.registers[at].bytes;
        value = value << 8 * bytes | m_values[at];
        byte += bytes;
    }
    return static_cast<uint16_t>(value);
}

void CSimRegisters::Give(const sim_outside_t& what, uint16_t value) {
    for (unsigned int byte = 0; byte < BytesOf(what);) {
        const uint16_t at = m_by_pointer[what.pointer + byte];
        const unsigned int bytes = m_part.registers[at].bytes;
        byte += bytes;
        const unsigned int mask = (1U << 8 * bytes) - 1;
        m_values[at] = static_cast<uint16_t>(value >> 8 * (BytesOf(what) - byte) & mask);
    }
}

void CSimRegisters::Reset(uint8_t pointer) {
    const uint16_t at = m_by_pointer[pointer];
    m_values[at] = m_part.registers[at].reset;
}

void CSimRegisters::Advance() {
    m_byte = 0;
    m_shift = 0;
    switch (m_part.pointer) {
        case SIM_POINTER_STAYS:
        case SIM_POINTER_NONE:
            break;
        case SIM_POINTER_ADVANCES:
            ++m_pointer;
            break;
        case SIM_POINTER_TOGGLES:
            m_pointer ^= 1;
            break;
    }
}
