// Mounts the I/O ports of the processor's bus.
#pragma once

#include <cstdint>
#include <vector>

#include "boards/devicetree/board_hardware.h"
#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sibling_names.h"
#include "framework/diag_menu.h"

class CIoMount {
  public:
    CIoMount(CTreeNames& names, IBoardHardware& hardware) : m_names(names), m_hardware(hardware) {}

    // "reg" is an address and the number of ports, in as many cells as the parent says.
    // Throws CDiagException when the node cannot be mounted.
    void MountPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu);

  private:
    struct CRegion {
        uint64_t address;
        uint64_t ports;
        const CDeviceTreeNode* node;
    };

    static CRegion RegionOf(const CDeviceTreeNode& node);
    void Claim(const CRegion& region);

    CTreeNames& m_names;
    IBoardHardware& m_hardware;
    std::vector<CRegion> m_regions;
};
