// Simulated I/O port expanders, with pins. The world outside has one value, "pins", bit n
// for pin n: it gives 1 to let go of a pin, which is then pulled up, and 0 to pull it low,
// and sees the pin's level.
#pragma once

#include "boards/sim/sim_registers.h"

// PCA9534, PCA9535, PCA9555: an input has the level of the world outside, an output that
// of its latch.
class CSimExpander : public CSimRegisters {
  public:
    CSimExpander(const sim_register_part_t& part, uint8_t addr);

  protected:
    void Refresh() override;
    uint16_t Seen(const sim_outside_t& what) const override;
    void Give(const sim_outside_t& what, uint16_t value) override;

  private:
    uint8_t Register(unsigned int kind, unsigned int port) const;
    uint8_t Level(unsigned int port) const;

    const unsigned int m_ports;
    uint16_t m_given = 0xFFFF;
};

// PCF8574: its outputs pull low or let go, so a pin is high where nobody pulls it low.
class CSimQuasiExpander : public CSimRegisters {
  public:
    // The two registers at the one place: what is read, and what was written.
    static constexpr uint8_t PINS = 0;
    static constexpr uint8_t LATCH = 1;

    using CSimRegisters::CSimRegisters;

  protected:
    void Refresh() override;
    uint16_t Seen(const sim_outside_t& what) const override;
    void Give(const sim_outside_t& what, uint16_t value) override;

  private:
    uint8_t m_given = 0xFF;
};
