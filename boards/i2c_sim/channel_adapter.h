// An adapter on a channel of a multiplexer that the kernel drives: every transfer selects
// the channel first, and closes it again where the description asks for that.
#pragma once

#include <optional>

#include "boards/i2c_sim/adapter.h"

// How a channel is opened and closed.
struct mux_control_t {
    uint8_t addr;                   // of the multiplexer
    uint8_t select;                 // what its control register is set to for the channel
    std::optional<uint8_t> closed;  // and behind every transfer
};

class CChannelAdapter : public CAdapter {
  public:
    // What the multiplexer hangs on must outlive the adapter.
    CChannelAdapter(unsigned int number, unsigned int channel, CAdapter& parent,
                    const mux_control_t& control);

    // Sets the control register of a multiplexer: how many messages were moved, or a
    // negated errno.
    static int Set(CAdapter& parent, uint8_t addr, uint8_t value);

    const CAdapter* Parent() const override { return &m_parent; }
    int Transfer(std::span<const CI2cMsg> msgs) override;

  private:
    CAdapter& m_parent;
    const mux_control_t m_control;
};
