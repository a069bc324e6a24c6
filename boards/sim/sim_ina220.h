// The simulated INA220: it measures without end what the world outside gives, and
// calculates current and power from it.
#pragma once

#include "boards/sim/sim_registers.h"

class CSimIna220 : public CSimRegisters {
  public:
    using CSimRegisters::CSimRegisters;

  protected:
    void Refresh() override;
};
