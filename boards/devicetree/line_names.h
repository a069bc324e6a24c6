// The names that a description gives the pins of a port expander.
#pragma once

#include "boards/devicetree/device_tree_node.h"
#include "framework/diag_menu.h"

// Adds to `chip` a text "lines-PORT" for each of its ports that has named pins, from the
// property "gpio-line-names": "0 los, 3 fault". Throws CDiagException when that names more
// pins than `ports` have.
void AddLineNames(CDiagMenu& chip, const CDeviceTreeNode& node, size_t ports);
