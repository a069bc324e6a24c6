// Typed reading of a node's properties. Whatever is not of the form asked for
// is refused with a CDiagException that names the node's path, the property,
// what was found and what is right.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "boards/devicetree/device_tree_node.h"

// A cell is a big-endian 32-bit number.
inline constexpr size_t CELL_SIZE = 4;

// Whether the node has the property, whatever its value: how a device tree
// says yes.
bool ReadBool(const CDeviceTreeNode& node, std::string_view name);

// One cell; nothing when the property is absent.
std::optional<uint32_t> ReadU32(const CDeviceTreeNode& node, std::string_view name);
// One cell that must be there.
uint32_t RequireU32(const CDeviceTreeNode& node, std::string_view name);
// Any number of cells, at least one; none when the property is absent.
std::vector<uint32_t> ReadCells(const CDeviceTreeNode& node, std::string_view name);

// One string; nothing when the property is absent.
std::optional<std::string> ReadString(const CDeviceTreeNode& node, std::string_view name);
// A list of strings; empty when the property is absent.
std::vector<std::string> ReadStrings(const CDeviceTreeNode& node, std::string_view name);
