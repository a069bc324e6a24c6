#include "boards/sim/sim_commands.h"

#include "framework/diag_command.h"
#include "framework/diag_param.h"

namespace {

constexpr double NS_PER_MS = 1e6;

void PrintFaults(const CDiagMenu& node, const CSimBus& bus) {
    for (const std::string& fault : bus.Faults().Describe()) {
        node.SendLog(LW_PRINT, "%s: fault: %s\n", bus.GetName(), fault.c_str());
    }
}

uint8_t ReadAddr(CInMsg& in) {
    uint8_t addr = 0;
    in >> addr;
    if (addr > 0x7F) {
        throw CDiagException("bad address 0x%02x: 7 bits at most", addr);
    }
    return addr;
}

}  // namespace

CSimCmd::CSimCmd(const std::string& name, const std::string& description)
    : CDiagFunc(name, description, 0) {}

void CSimCmd::Invoke(CInMsg& in, COutMsg& out) {
    auto& device = ParentDeviceOf<CSimDevice>(*this);
    AnswerWorkOf(*this, out, [&] {
        Run(device, in);
        return true;
    });
}

CSimFaultCmd::CSimFaultCmd(const std::string& name, const std::string& description)
    : CSimCmd(name, description) {
    AddChild(new CDiagParam(VT_STRING, "bus", "name of the bus", PT_IN), NO_SORT);
}

void CSimFaultCmd::Run(CSimDevice& device, CInMsg& in) {
    std::string name;
    in >> name;
    CSimBus& bus = device.GetBus(name);
    Inject(bus.Faults(), in);
    PrintFaults(*this, bus);
}

CSimNackCmd::CSimNackCmd(const std::string& name, const std::string& description)
    : CSimFaultCmd(name, description) {
    AddChild(new CDiagParam(VT_UINT8 | VF_HEX, "addr", "slave address", PT_IN), NO_SORT);
}

void CSimNackCmd::Inject(CSimFaults& faults, CInMsg& in) {
    faults.Nack(ReadAddr(in));
}

void CSimStickCmd::Inject(CSimFaults& faults, CInMsg&) {
    faults.Stick();
}

CSimFlipCmd::CSimFlipCmd(const std::string& name, const std::string& description)
    : CSimFaultCmd(name, description) {
    AddChild(new CDiagParam(VT_UINT8 | VF_HEX, "addr", "slave address", PT_IN), NO_SORT);
    AddChild(new CDiagParam(VT_UINT8, "byte", "byte of a read, from 0", PT_IN), NO_SORT);
    AddChild(new CDiagParam(VT_UINT8, "bit", "bit of the byte, 0 to 7", PT_IN), NO_SORT);
}

void CSimFlipCmd::Inject(CSimFaults& faults, CInMsg& in) {
    const uint8_t addr = ReadAddr(in);
    uint8_t byte = 0;
    uint8_t bit = 0;
    in >> byte >> bit;
    if (bit > 7) {
        throw CDiagException("bad bit %u: 0 to 7", bit);
    }
    faults.Flip(addr, byte, bit);
}

CSimFailNthCmd::CSimFailNthCmd(const std::string& name, const std::string& description)
    : CSimFaultCmd(name, description) {
    AddChild(new CDiagParam(VT_UINT32, "n", "which transfer from now on, 1 for the next", PT_IN),
             NO_SORT);
    AddChild(new CDiagParam(VT_STRING, "fault",
                            "how it fails (arbitration/nack), without it arbitration is lost",
                            PT_IN | PT_OPTIONAL),
             NO_SORT);
}

void CSimFailNthCmd::Inject(CSimFaults& faults, CInMsg& in) {
    uint32_t nth = 0;
    in >> nth;
    if (nth == 0) {
        throw CDiagException("bad transfer 0: 1 is the next one");
    }
    std::string fault = "arbitration";
    if (in.GetLen() != 0) {
        in >> fault;
    }
    if (fault != "arbitration" && fault != "nack") {
        throw CDiagException("bad fault \"%s\": arbitration or nack", fault.c_str());
    }
    faults.FailNth(nth, fault == "nack" ? SIM_NO_ACK : SIM_ARB_LOST);
}

void CSimClearCmd::Run(CSimDevice& device, CInMsg&) {
    for (CSimBus* bus : device.GetBuses()) {
        bus->Faults().Clear();
    }
    SendLog(LW_PRINT, "all faults cleared\n");
}

void CSimShowCmd::Run(CSimDevice& device, CInMsg&) {
    for (const CSimBus* bus : device.GetBuses()) {
        SendLog(LW_PRINT, "%s: %llu transfers, %llu polls, %llu bytes, %.3f ms on the wire\n",
                bus->GetName(), static_cast<unsigned long long>(bus->GetTransfers()),
                static_cast<unsigned long long>(bus->GetPolls()),
                static_cast<unsigned long long>(bus->GetBytes()),
                static_cast<double>(bus->GetWireNs()) / NS_PER_MS);
        PrintFaults(*this, *bus);
    }
}

CSimPaceCmd::CSimPaceCmd(const std::string& name, const std::string& description)
    : CSimCmd(name, description) {
    AddChild(new CDiagParam(VT_UINT32, "percent",
                            "of real time: 0 as fast as possible, 100 as slow as the hardware, "
                            "10000 a hundred times slower",
                            PT_IN | PT_OPTIONAL),
             NO_SORT);
}

void CSimPaceCmd::Run(CSimDevice& device, CInMsg& in) {
    if (in.GetLen() != 0) {
        uint32_t percent = 0;
        in >> percent;
        for (CSimBus* bus : device.GetBuses()) {
            bus->Pace().Set(percent);
        }
    }
    for (const CSimBus* bus : device.GetBuses()) {
        const uint32_t percent = bus->Pace().Get();
        if (percent == 0) {
            SendLog(LW_PRINT, "%s: pace 0, as fast as possible\n", bus->GetName());
        } else {
            SendLog(LW_PRINT, "%s: pace %u, takes %u %% of real time\n", bus->GetName(), percent,
                    percent);
        }
    }
}
