// A piece of wire and the chips on it. Every chip that acknowledged the address
// takes part: the wire is low where any of them pulls it low, so bytes read are
// ANDed and one acknowledge is enough.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "boards/sim/sim_chip.h"

class CSimSegment {
  public:
    // Puts a chip on the wire and hands it back for further use.
    template <class Chip>
    Chip& Add(std::unique_ptr<Chip> chip) {
        Chip& added = *chip;
        m_slots.push_back({std::move(chip), false});
        return added;
    }

    bool Start(uint8_t addr, bool read);
    bool WriteByte(uint8_t value);
    // 0xFF when nobody takes part: the wire floats high.
    uint8_t ReadByte();
    void Stop();

  private:
    struct CSlot {
        std::unique_ptr<ISimChip> chip;
        bool takes_part;
    };
    std::vector<CSlot> m_slots;
};
