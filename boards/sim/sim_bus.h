// The root bus that is simulated: chips on a segment, faults, and the time that
// everything would take on a real wire. Waiting moves the bus's own time, and
// takes real time only as far as the pace asks for it. Read-only nodes below it
// count "transfers", "polls" (a busy chip asked again), "bytes" (address bytes
// included) and "wire-time-ns".
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>

#include "boards/root_bus/root_bus.h"
#include "boards/sim/sim_clock.h"
#include "boards/sim/sim_faults.h"
#include "boards/sim/sim_pace.h"
#include "boards/sim/sim_segment.h"

class CSimBus : public CRootBus {
  public:
    CSimBus(const std::string& name, const std::string& description, uint32_t clock_hz);

    // The wire at the controller. Chips are added before the first transfer.
    CSimSegment& Segment() { return m_segment; }
    CSimFaults& Faults() { return m_faults; }
    const CSimFaults& Faults() const { return m_faults; }
    // The time that the chips of this bus live in.
    const CSimClock& Clock() const { return m_clock; }
    CSimPace& Pace() { return m_pace; }
    const CSimPace& Pace() const { return m_pace; }

    // All that a transfer record can ask for.
    uint32_t GetMaxTransSize() override { return 255; }

    void WaitMs(unsigned int ms) override;

    uint64_t GetTransfers() const { return m_transfers; }
    uint64_t GetPolls() const { return m_polls; }
    uint64_t GetBytes() const { return m_bytes; }
    uint64_t GetWireNs() const { return m_clock.WireNs(); }

    CI2cResult Transfer(std::span<const CI2cMsg> msgs, bool again) override;

  protected:
    uint64_t NowMs() override;

  private:
    CI2cResult TransferAtOnce(std::span<const CI2cMsg> msgs, bool again);
    CI2cResult MoveAndStop(std::span<const CI2cMsg> msgs, bool nacked);
    CI2cResult MoveNacked(const CI2cMsg& msg);
    CI2cResult Move(std::span<const CI2cMsg> msgs);
    bool Address(const CI2cMsg& msg);
    void CountByte();

    CSimClock m_clock;
    CSimPace m_pace;
    CSimSegment m_segment;
    CSimFaults m_faults;
    std::atomic<uint64_t> m_transfers{0};
    std::atomic<uint64_t> m_polls{0};
    std::atomic<uint64_t> m_bytes{0};
};
