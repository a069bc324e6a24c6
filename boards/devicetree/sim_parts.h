// Creators of the simulated chips: from a node of the description to a chip on
// its wire.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/eeprom_part.h"
#include "boards/sim/sim_clock.h"
#include "boards/sim/sim_memory.h"
#include "boards/sim/sim_mux.h"
#include "boards/sim/sim_registers.h"
#include "boards/sim/sim_segment.h"
#include "framework/diag_exception.h"

// What is to be put on the wire.
struct CChipRequest {
    const CDeviceTreeNode& node;
    std::string compatible;
    uint8_t addr;
    CSimSegment& segment;
    const CSimClock& clock;
    const eeprom_part_t* eeprom;     // what an EEPROM is
    std::filesystem::path contents;  // the file that a memory lives in
    std::filesystem::path image;     // what it holds at first; may be missing
};

// The contents of a simulated chip cannot be had. Unlike a fault of the
// description it ends the start: a board with other contents than the operator's
// own would only mislead.
class CContentsFault : public CDiagException {
  public:
    explicit CContentsFault(const std::string& text) : CDiagException("%s", text.c_str()) {}
};

// How the file of the memory at that address is called.
std::filesystem::path ContentsFile(uint8_t addr);

// What the rest of the board has to know of the chip; the wire owns it.
struct CSimParts {
    CSimMemory* memory = nullptr;        // of a memory chip
    CSimMemory* diagnostics = nullptr;   // of a module that has them
    CSimMux* mux = nullptr;              // of a multiplexer
    CSimRegisters* registers = nullptr;  // of a register chip
};

// All throw CDiagException, naming the node, when the chip cannot be made.
CSimParts CreateSimEeprom(const CChipRequest& request);
// The second memory is there when it has contents, or an image that it may begin with.
CSimParts CreateSimModule(const CChipRequest& request);
CSimParts CreateSimMux(const CChipRequest& request);
CSimParts CreateSimRegisters(const CChipRequest& request);
