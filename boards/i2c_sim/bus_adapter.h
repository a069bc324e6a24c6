// An adapter on a simulated root bus. The chips live in real time here: between two
// transfers at least as much of it passes for them as for the program.
#pragma once

#include <chrono>

#include "boards/i2c_sim/adapter.h"
#include "boards/sim/sim_bus.h"

class CBusAdapter : public CAdapter {
  public:
    // The bus must outlive the adapter.
    CBusAdapter(unsigned int number, const adapter_traits_t& traits, CSimBus& bus);

    int Transfer(std::span<const CI2cMsg> msgs) override;

  private:
    using CClock = std::chrono::steady_clock;

    CSimBus& m_bus;
    CClock::time_point m_passed;  // up to when time has passed for the chips
};
