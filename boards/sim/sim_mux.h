// The PCA954x multiplexers and switches: one control register, and a segment
// per channel that is part of the wire while its channel is open. A selection
// takes effect at the stop condition.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "boards/sim/sim_chip.h"
#include "boards/sim/sim_segment.h"

enum ESimMuxKind : uint8_t {
    SIM_MUX_ENABLE_BIT = 0,  // one channel at most: its number below an enable bit
    SIM_MUX_BIT_MASK = 1,    // any set of channels: one bit each
};

struct sim_mux_part_t {
    const char* name;
    uint8_t channels;
    ESimMuxKind kind;
    uint8_t power_on;    // control register at power-on
    uint8_t enable_bit;  // of SIM_MUX_ENABLE_BIT, as a mask
};

// "pca9540" to "pca9548".
std::span<const sim_mux_part_t> SimMuxParts();
// The part of that name, or null.
const sim_mux_part_t* FindSimMuxPart(std::string_view name);

class CSimMux : public ISimChip {
  public:
    CSimMux(const sim_mux_part_t& part, uint8_t addr);

    unsigned int Channels() const { return static_cast<unsigned int>(m_channels.size()); }
    // The wire behind channel `ch`, which must exist.
    CSimSegment& Channel(unsigned int ch) { return m_channels.at(ch).segment; }
    uint8_t Control() const { return m_control; }

    bool Start(uint8_t addr, bool read) override;
    bool WriteByte(uint8_t value) override;
    uint8_t ReadByte() override;
    void Stop() override;

  private:
    struct CChannel {
        CSimSegment segment;
        bool open = false;
        bool takes_part = false;
    };

    void Connect();

    const sim_mux_part_t m_part;
    const uint8_t m_addr;
    uint8_t m_control;
    bool m_addressed = false;
    std::vector<CChannel> m_channels;
};
