// The node "sim": commands that inject faults into the simulated buses, show
// what the buses did and set their pace, and below it the contents of every
// memory chip, reachable without the bus, and the world outside of every register chip.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "boards/sim/sim_bus.h"
#include "boards/sim/sim_memory.h"
#include "boards/sim/sim_registers.h"
#include "boards/sim/state_lock.h"
#include "framework/diag_device.h"

class CSimDevice : public CDiagDevice {
  public:
    CSimDevice();

    // Buses and chips are not owned and must outlive every use of this node.
    void AddBus(CSimBus& bus) { m_buses.push_back(&bus); }
    // Adds an array node of that name whose positions are the memory's offsets.
    void AddContents(const std::string& name, CSimMemory& memory);
    // Adds a menu of that name, see CreateOutsideMenu.
    void AddOutside(const std::string& name, CSimRegisters& chip);
    // Keeps other processes away from the folder that the memories live in.
    // Throws CDiagException when one has it already.
    void LockState(const std::filesystem::path& folder);

    const std::vector<CSimBus*>& GetBuses() const { return m_buses; }
    // The bus of that name; throws CDiagException, listing the buses, when there is none.
    CSimBus& GetBus(const std::string& name) const;

  private:
    std::vector<CSimBus*> m_buses;
    std::optional<CStateLock> m_state_lock;
};
