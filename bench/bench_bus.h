// A simulated bus that can write down what it is asked for, and that knows how
// much of the time on its wire is a chip's own.
#pragma once

#include <cstdint>
#include <vector>

#include "boards/sim/sim_bus.h"

class CBenchBus : public CSimBus {
  public:
    // A transfer with a copy of its data, to be made again with that as its buffer.
    struct CRecorded {
        CI2cXfrReq req;
        std::vector<byte_t> data;
    };

    using CSimBus::CSimBus;

    // From now on transfers are written down here; null ends it.
    void Record(std::vector<CRecorded>* into) { m_into = into; }

    // The bits of the chip at `addr` are counted from now on.
    void Watch(uint8_t addr) {
        m_watched = addr;
        m_chip_bits = 0;
    }
    // Its slave address, memory address and data bytes with their acknowledges,
    // of transfers that went well.
    uint64_t GetChipBits() const { return m_chip_bits; }

    bool I2cTrans(CI2cXfrReq& req) override;

  protected:
    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) override;

  private:
    std::vector<CRecorded>* m_into = nullptr;
    uint8_t m_watched = 0;
    uint64_t m_chip_bits = 0;
};
