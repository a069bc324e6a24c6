// Names of tree nodes: typeable in the shell without quoting, and unique among
// siblings.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "boards/devicetree/device_tree_node.h"

// The name a node asks for: its label, else its node name.
std::string WantedName(const CDeviceTreeNode& node);

// `wanted` with every character outside [A-Za-z0-9_.@+,-] replaced by "_".
// Never empty, and never a name that means a place in a path.
std::string TypeableName(std::string_view wanted);

// `name`, or the first of "name-2", "name-3", ... that is not taken.
std::string UniqueName(const std::string& name,
                       const std::function<bool(const std::string&)>& taken);
