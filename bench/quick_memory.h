// A chip on the simulated wire that reads like a 24C64 and costs next to
// nothing, so that what is measured is the way to it and not the chip: the
// simulated EEPROMs read their file for every transfer.
#pragma once

#include <cstdint>

#include "boards/sim/sim_chip.h"

class CQuickMemory : public ISimChip {
  public:
    explicit CQuickMemory(uint8_t addr) : m_addr(addr) {}

    bool Start(uint8_t addr, bool) override { return addr == m_addr; }
    // The memory address; nothing is ever stored.
    bool WriteByte(uint8_t value) override {
        m_pointer = static_cast<uint16_t>(m_pointer << 8 | value);
        return true;
    }
    uint8_t ReadByte() override { return static_cast<uint8_t>(m_pointer++); }
    void Stop() override {}

  private:
    const uint8_t m_addr;
    uint16_t m_pointer = 0;
};
