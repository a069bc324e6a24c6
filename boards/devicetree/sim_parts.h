// Creators of the simulated chips: from a node of the description to a chip on
// its wire.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/sim/sim_memory.h"
#include "boards/sim/sim_mux.h"
#include "framework/diag_exception.h"

// What is to be put on the wire.
struct CChipRequest {
    const CDeviceTreeNode& node;
    std::string compatible;
    uint8_t addr;  // already claimed
    CI2cWire& wire;
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

// What the rest of the board has to know of the chip; the wire owns it.
struct CSimParts {
    CSimMemory* memory = nullptr;  // of a memory chip
    CSimMux* mux = nullptr;        // of a multiplexer
};

// The part's name in a compatible: what stands behind the comma, if any.
std::string_view PartName(std::string_view compatible);

// All throw CDiagException, naming the node, when the chip cannot be made.

// A member of the AT24 family, by the part's name. The properties "size",
// "pagesize", "address-width" and "read-only" override what the part is.
CSimParts CreateSimAt24(const CChipRequest& request);
// A board's own EEPROM: an AT24C64 unless its properties say otherwise.
CSimParts CreateSimBoardEeprom(const CChipRequest& request);
// The serial-ID memory of a pluggable optical module.
CSimParts CreateSimModuleEeprom(const CChipRequest& request);
CSimParts CreateSimMux(const CChipRequest& request);
