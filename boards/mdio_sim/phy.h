// A simulated clause-22 PHY: a gigabit copper transceiver with a partner at the other
// end of its cable. Has no pointers: it is shared between processes.
#pragma once

#include <array>
#include <cstdint>

class CPhy {
  public:
    static constexpr uint16_t REGISTERS = 32;

    // `identifier` is what its registers 2 and 3 hold, 2 first.
    explicit CPhy(uint32_t identifier);

    // `reg` is below REGISTERS.
    uint16_t Read(uint16_t reg);
    // Registers and bits that cannot be written keep what they hold.
    void Write(uint16_t reg, uint16_t value);

  private:
    void Reset();
    void WriteControl(uint16_t value);
    uint16_t ReadStatus();
    bool HasLink() const;
    bool IsNegotiated() const;

    std::array<uint16_t, REGISTERS> m_regs = {};  // without the bits that tell of the link
    bool m_link_dropped = false;                  // since the status was last read
};
