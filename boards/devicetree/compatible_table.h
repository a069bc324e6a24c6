// The one table from "compatible" to what stands for a device: its node in the
// tree and, on a simulated board, its chip on the wire.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "boards/devicetree/device_request.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/eeprom_part.h"
#include "boards/devicetree/sim_parts.h"

enum class EBindingKind {
    CONTAINER,  // a bus of the processor that only holds other nodes
    I2C_BUS,
    I2C_DEVICE,
    I2C_MUX,
    IO_PORTS,
    I2C_MODULE,  // pluggable: stands anywhere and names its bus
    MDIO_BUS,
    MDIO_PHY,
    MDIO_C45_PHY,  // out of reach of clause 22
};

struct CBinding {
    using CreateNode = std::unique_ptr<CDiagMenu> (*)(const CDeviceRequest&);
    using CreateChip = CSimParts (*)(const CChipRequest&);
    using DescribeEeprom = eeprom_part_t (*)(const CDeviceTreeNode&, const std::string&);

    std::string_view compatible;  // "vendor,part"; "*,part" stands for every vendor's
    EBindingKind kind;
    CreateNode create_node = nullptr;          // null where the node is no device of its own
    CreateChip create_chip = nullptr;          // null where nothing on the wire is simulated
    DescribeEeprom describe_eeprom = nullptr;  // of EEPROMs alone
};

// What a list of compatibles says a node is.
struct CMatch {
    const CBinding* binding = nullptr;  // null when nothing matches
    std::string compatible;             // the text that matched, else the first; may be empty
};

// The first text of the list that the table names in full decides; failing
// that, the first whose part after the comma it has for every vendor.
CMatch MatchCompatible(const CDeviceTreeNode& node);
