#include "boards/sim/sim_device.h"

#include "boards/sim/sim_commands.h"
#include "boards/sim/sim_outside.h"
#include "framework/diag_array.h"
#include "framework/diag_exception.h"

namespace {

// The bytes of a memory chip, past bus, write protection and write cycle.
class CSimContents : public CDiagAddrArray<unsigned char> {
  public:
    CSimContents(const std::string& name, CSimMemory& memory)
        : CDiagAddrArray<unsigned char>(name, "contents of " + memory.Path().string(), 0,
                                        memory.Size() - 1, false, VT_UINT8 | VF_HEX | VF_PAD),
          m_memory(memory) {}

    void Set(uint64_t pos, const unsigned char& value) override {
        m_memory.Write(static_cast<uint32_t>(pos), {&value, 1});
    }
    unsigned char Get(uint64_t pos) override {
        unsigned char value = 0;
        m_memory.Read(static_cast<uint32_t>(pos), {&value, 1});
        return value;
    }

  private:
    CSimMemory& m_memory;
};

}  // namespace

CSimDevice::CSimDevice() : CDiagDevice("sim", "simulated hardware", TDEVICE) {
    AddChild(new CSimNackCmd("nack", "nobody acknowledges an address"), NO_SORT);
    AddChild(new CSimStickCmd("stick", "hold a line of the bus low"), NO_SORT);
    AddChild(new CSimFlipCmd("flip", "flip a bit of what is read from an address"), NO_SORT);
    AddChild(new CSimFailNthCmd("fail-nth", "let one of the next transfers fail"), NO_SORT);
    AddChild(new CSimClearCmd("clear", "take all faults off all buses"), NO_SORT);
    AddChild(new CSimShowCmd("show", "show faults and time on the wire"), NO_SORT);
    AddChild(new CSimPaceCmd("pace", "show or set how slowly the buses run"), NO_SORT);
}

void CSimDevice::AddContents(const std::string& name, CSimMemory& memory) {
    AddChild(new CSimContents(name, memory), NO_SORT);
}

void CSimDevice::AddOutside(const std::string& name, CSimRegisters& chip) {
    AddChild(CreateOutsideMenu(name, chip).release(), NO_SORT);
}

void CSimDevice::LockState(const std::filesystem::path& folder) {
    if (!m_state_lock.has_value()) {
        m_state_lock.emplace(folder);
    }
}

CSimBus& CSimDevice::GetBus(const std::string& name) const {
    std::string known;
    for (CSimBus* bus : m_buses) {
        if (name == bus->GetName()) {
            return *bus;
        }
        known += (known.empty() ? "the buses are " : ", ") + std::string(bus->GetName());
    }
    throw CDiagException("no bus \"%s\": %s", name.c_str(),
                         known.empty() ? "there is none" : known.c_str());
}
