// What the steps of mounting a board share.
#pragma once

#include <cstdint>
#include <memory>

#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sim_parts.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"

// Reports what `step` throws and goes on: one bad node leaves the others alone.
template <class Step>
void MountStep(Step step) {
    try {
        step();
    } catch (const CContentsFault&) {
        throw;
    } catch (const CDiagException& fault) {
        diag_pf_send_log(LW_WARN, "left out: %s\n", fault.what());
    }
}

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
