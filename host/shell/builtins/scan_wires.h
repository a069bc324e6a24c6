// The wires of the board that can be scanned.
#pragma once

#include <cstddef>
#include <vector>

#include "framework/bus_scan.h"
#include "framework/diag_device.h"

struct CScanWire {
    static constexpr size_t NONE = static_cast<size_t>(-1);

    IBusScan* scan;
    const CDiagDevice* device;  // the same, as a device
    size_t number;              // of the wire among the device's
    const CDiagObj* node;
    size_t above;  // the next one towards the root bus, which comes earlier
    bool is_shown;
    bool is_needed;  // shown, or on the way to one that is
};

// All of the tree, in its order; those at and below `top` are shown.
std::vector<CScanWire> FindScanWires(CDiagObj& top);
