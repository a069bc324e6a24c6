#include "boards/sim/sim_faults.h"

#include "framework/fmt_output.h"

void CSimFaults::Nack(uint8_t addr) {
    const CGuard<CMutex> guard(m_lock);
    m_nacked.set(addr);
}

void CSimFaults::Stick() {
    const CGuard<CMutex> guard(m_lock);
    m_stuck = true;
}

void CSimFaults::Flip(uint8_t addr, uint8_t byte, uint8_t bit) {
    const CGuard<CMutex> guard(m_lock);
    m_flips.insert({addr, byte, bit});
}

void CSimFaults::FailNth(uint32_t nth, ESimFailure how) {
    const CGuard<CMutex> guard(m_lock);
    m_fail_in = nth;
    m_fail_how = how;
}

void CSimFaults::Clear() {
    const CGuard<CMutex> guard(m_lock);
    m_nacked.reset();
    m_stuck = false;
    m_fail_in = 0;
    m_flips.clear();
}

std::vector<std::string> CSimFaults::Describe() const {
    const CGuard<CMutex> guard(m_lock);
    std::vector<std::string> lines;
    CFmtString line;
    const auto take_line = [&] {
        lines.emplace_back(line.c_str());
        line.clear();
    };
    if (m_stuck) {
        line.printf("a line is stuck low");
        take_line();
    }
    for (size_t addr = 0; addr < m_nacked.size(); ++addr) {
        if (m_nacked[addr]) {
            line.printf("no acknowledge from 0x%02zx", addr);
            take_line();
        }
    }
    for (const CFlip& flip : m_flips) {
        line.printf("bit %u of byte %u read from 0x%02x arrives wrong", flip.bit, flip.byte,
                    flip.addr);
        take_line();
    }
    if (m_fail_in > 0) {
        line.printf("transfer %u from now %s", m_fail_in,
                    m_fail_how == SIM_NO_ACK ? "is not acknowledged" : "loses the arbitration");
        take_line();
    }
    return lines;
}

ESimFailure CSimFaults::CountTransfer() {
    const CGuard<CMutex> guard(m_lock);
    return m_fail_in > 0 && --m_fail_in == 0 ? m_fail_how : SIM_NO_FAILURE;
}

bool CSimFaults::IsStuck() const {
    const CGuard<CMutex> guard(m_lock);
    return m_stuck;
}

bool CSimFaults::Nacks(uint8_t addr) const {
    const CGuard<CMutex> guard(m_lock);
    return m_nacked.test(addr);
}

void CSimFaults::FlipBits(uint8_t addr, std::span<uint8_t> data) const {
    const CGuard<CMutex> guard(m_lock);
    for (const CFlip& flip : m_flips) {
        if (flip.addr == addr && flip.byte < data.size()) {
            data[flip.byte] = static_cast<uint8_t>(data[flip.byte] ^ (1U << flip.bit));
        }
    }
}
