// Mounts the MDIO buses of a description with the PHYs on them.
#pragma once

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sibling_names.h"
#include "framework/diag_menu.h"

// Throws CDiagException when the bus itself cannot be mounted; what cannot be
// mounted below it is reported.
void MountMdioBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu,
                  CTreeNames& names);
