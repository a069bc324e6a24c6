// The simulated INA220: it measures what the world outside gives, without end or when it
// is asked to, calculates current and power from it, and says when a conversion is ready.
#pragma once

#include "boards/sim/sim_registers.h"

class CSimIna220 : public CSimRegisters {
  public:
    using CSimRegisters::CSimRegisters;

  protected:
    void Refresh() override;
    void HaveRead(uint8_t pointer) override;
    void HaveWritten(uint8_t pointer) override;

  private:
    bool IsContinuous() const;
    void SetConverted(bool converted);

    bool m_is_converting = false;
};
