// What the steps of mounting a board share.
#pragma once

#include <cstdint>
#include <memory>

#include "boards/devicetree/device_tree_node.h"
#include "framework/diag_menu.h"

template <class Node>
Node& AddNode(CDiagMenu& menu, std::unique_ptr<Node> node) {
    Node& added = *node;
    menu.AddChild(node.release(), CDiagObj::NO_SORT);
    return added;
}

// Whether the description says that the node is not in use.
bool IsDisabled(const CDeviceTreeNode& node);

// The value of "reg" when that is a number in the range; `what` names such a number.
uint32_t RequireReg(const CDeviceTreeNode& node, uint32_t first, uint32_t last, const char* what);

// The same where a node may have several such numbers: the first.
uint32_t RequireFirstReg(const CDeviceTreeNode& node, uint32_t first, uint32_t last,
                         const char* what);

// The node whose children are the channels: the multiplexer's own node, or the
// one that it keeps for them beside other children.
const CDeviceTreeNode& ChannelsOf(const CDeviceTreeNode& mux);
