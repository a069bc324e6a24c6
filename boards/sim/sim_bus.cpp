#include "boards/sim/sim_bus.h"

namespace {

// A start or stop condition takes the time of a bit; a byte has its acknowledge.
constexpr uint64_t CONDITION_BITS = 1;
constexpr uint64_t BYTE_BITS = 9;
constexpr uint64_t NS_PER_MS = 1'000'000;

// A counter of the bus as a node.
class CWireCounter : public CDiagValue<uint64_t> {
  public:
    using CRead = uint64_t (CSimBus::*)() const;

    CWireCounter(const CSimBus& bus, const char* name, const char* description, CRead read)
        : CDiagValue<uint64_t>(name, description, true, VT_UINT64), m_bus(bus), m_read(read) {}

    void Set(const uint64_t&) override { throw CDiagException("%s only counts", GetName()); }
    uint64_t Get() override { return (m_bus.*m_read)(); }

  private:
    const CSimBus& m_bus;
    const CRead m_read;
};

}  // namespace

CSimBus::CSimBus(const std::string& name, const std::string& description, uint32_t clock_hz)
    : CRootBus(name, description), m_clock(clock_hz) {
    AddChild(new CWireCounter(*this, "transfers", "transfers since start-up, failed ones included",
                              &CSimBus::GetTransfers),
             NO_SORT);
    AddChild(new CWireCounter(*this, "polls", "times a chip was asked again after a write",
                              &CSimBus::GetPolls),
             NO_SORT);
    AddChild(new CWireCounter(*this, "bytes", "bytes on the wire, address bytes included",
                              &CSimBus::GetBytes),
             NO_SORT);
    AddChild(new CWireCounter(*this, "wire-time-ns", "time on the wire in nanoseconds",
                              &CSimBus::GetWireNs),
             NO_SORT);
}

CI2cResult CSimBus::Transfer(std::span<const CI2cMsg> msgs, bool again) {
    const uint64_t begin_ns = m_clock.WireNs();
    CI2cResult result = TransferAtOnce(msgs, again);
    m_pace.Pass(m_clock.WireNs() - begin_ns);
    return result;
}

void CSimBus::WaitMs(unsigned int ms) {
    m_clock.Wait(ms);
    m_pace.Pass(ms * NS_PER_MS);
}

CI2cResult CSimBus::TransferAtOnce(std::span<const CI2cMsg> msgs, bool again) {
    ++(again ? m_polls : m_transfers);
    // A poll is nobody's own transfer, so it is not the one that was meant to fail.
    const ESimFailure failure = again ? SIM_NO_FAILURE : m_faults.CountTransfer();
    if (m_faults.IsStuck()) {
        return CI2cResult::BusStuck();
    }
    if (failure == SIM_ARB_LOST) {
        return CI2cResult::ArbLost();
    }
    return MoveAndStop(msgs, failure == SIM_NO_ACK);
}

// A chip whose contents cannot be read or stored says so by an exception: on the
// wire there is no such fault.
CI2cResult CSimBus::MoveAndStop(std::span<const CI2cMsg> msgs, bool nacked) {
    CI2cResult result;
    const auto guarded = [&](auto step) {
        try {
            step();
        } catch (const CDiagException& e) {
            SendLog(LW_ERR_SYS, "%s\n", e.what());
            result = CI2cResult::Other(e.what());
        }
    };
    guarded([&] { result = nacked ? MoveNacked(msgs.front()) : Move(msgs); });
    m_clock.AddBits(CONDITION_BITS);
    guarded([&] { m_segment.Stop(); });
    return result;
}

uint64_t CSimBus::NowMs() {
    return m_clock.NowNs() / NS_PER_MS;
}

// Also of a chip that is busy, which would only be asked again otherwise.
CI2cResult CSimBus::MoveNacked(const CI2cMsg& msg) {
    Address(msg);
    if (msg.read || msg.data.empty()) {
        return CI2cResult::NoAddrAck(0);
    }
    CountByte();
    return CI2cResult::NoDataAck(0, 0);
}

CI2cResult CSimBus::Move(std::span<const CI2cMsg> msgs) {
    for (size_t i = 0; i < msgs.size(); ++i) {
        const CI2cMsg& msg = msgs[i];
        if (!Address(msg)) {
            return CI2cResult::NoAddrAck(i);
        }
        if (msg.read) {
            for (uint8_t& byte : msg.data) {
                CountByte();
                byte = m_segment.ReadByte();
            }
            m_faults.FlipBits(msg.addr, msg.data);
            continue;
        }
        for (size_t n = 0; n < msg.data.size(); ++n) {
            CountByte();
            if (!m_segment.WriteByte(msg.data[n])) {
                return CI2cResult::NoDataAck(i, n);
            }
        }
    }
    return CI2cResult::Ok();
}

// The chips see the start in any case: it ends what they were doing.
bool CSimBus::Address(const CI2cMsg& msg) {
    m_clock.AddBits(CONDITION_BITS);
    CountByte();
    return m_segment.Start(msg.addr, msg.read) && !m_faults.Nacks(msg.addr);
}

void CSimBus::CountByte() {
    m_clock.AddBits(BYTE_BITS);
    ++m_bytes;
}
