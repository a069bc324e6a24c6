// Mounts the I/O ports of the processor's bus.
#pragma once

#include <filesystem>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/sim/sim_device.h"
#include "framework/diag_menu.h"

// "reg" is an address and the number of ports. Their file is "io-ports/ADDRESS.bin" below
// `state`; a missing one is made, all pins high. Throws CDiagException when the node cannot
// be mounted.
void MountIoPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu,
                  CTreeNames& names, CSimDevice& sim, const std::filesystem::path& state);
