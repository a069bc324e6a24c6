// Mounts the I/O ports of the processor's bus.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/sim/sim_device.h"
#include "framework/diag_menu.h"

class CIoMount {
  public:
    CIoMount(CTreeNames& names, CSimDevice& sim, std::filesystem::path state);

    // "reg" is an address and the number of ports, in as many cells as the parent says.
    // Their file is "io-ports/ADDRESS.bin" below `state`; a missing one is made, all pins
    // high. Throws CDiagException when the node cannot be mounted.
    void MountPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu);

  private:
    struct CRegion {
        uint64_t address;
        uint64_t ports;
        const CDeviceTreeNode* node;
    };

    static CRegion RegionOf(const CDeviceTreeNode& node);
    void Claim(const CRegion& region);
    std::filesystem::path FileOf(const CRegion& region);

    CTreeNames& m_names;
    CSimDevice& m_sim;
    const std::filesystem::path m_state;
    std::vector<CRegion> m_regions;
};
