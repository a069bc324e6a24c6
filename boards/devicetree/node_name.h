// Names of tree nodes, typeable in the shell without quoting.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "boards/devicetree/device_tree_node.h"

// The name a node asks for: its label, else its node name.
std::string WantedName(const CDeviceTreeNode& node);

// `wanted` with every character outside [A-Za-z0-9_.@+,-] replaced by "_".
// Never empty, and never a name that means a place in a path.
std::string TypeableName(std::string_view wanted);

// A name that ends in "-NUMBER", taken apart.
struct CNumberedName {
    std::string base;
    uint32_t number;  // 0 where the name has none
};

// Only a number as it is written anew counts: "mux-07" is a base as a whole.
CNumberedName SplitNumber(const std::string& name);
