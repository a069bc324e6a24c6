// The tree node of a device that has no driver class: it shows what hangs where.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "boards/devicetree/device_tree_node.h"
#include "framework/diag_menu.h"

// A device of the description on its way into the tree.
struct CDeviceRequest {
    const CDeviceTreeNode& node;
    std::string name;              // in the tree
    std::string compatible;        // the one that was matched, else the first; may be empty
    std::optional<uint32_t> addr;  // on its bus
    bool simulated;                // whether a chip on the wire stands for it
};

// Described as "COMPATIBLE at 0xADDR: NOTE".
std::unique_ptr<CDiagMenu> CreatePlainNode(const CDeviceRequest& request, const char* note);

// For devices that are known, but not driven.
std::unique_ptr<CDiagMenu> CreateUnsupportedNode(const CDeviceRequest& request);
