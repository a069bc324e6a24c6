// Addresses as a node's own bus has them, and as the processor does.
#pragma once

#include <cstdint>
#include <span>

#include "boards/devicetree/device_tree_node.h"

// The number that cells of a property make; the first is the most significant.
uint64_t NumberOf(std::span<const uint32_t> cells);

// How many cells the node gives the address, or the size, in its children's "reg"; the
// property is "#address-cells" or "#size-cells". Throws CDiagException, naming the node,
// when that is neither 1 nor 2.
uint32_t CellsBelow(const CDeviceTreeNode& parent, const char* property);

// The processor's address of `address` on the bus that the node stands on, through the
// "ranges" of all buses above (Devicetree Specification, "ranges"). Throws CDiagException,
// naming the node, when it has none.
uint64_t ProcessorAddress(const CDeviceTreeNode& node, uint64_t address);
