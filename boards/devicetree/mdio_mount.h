// Mounts the MDIO buses of a description with the PHYs on them, all below the one device
// "mdio" that reaches them.
#pragma once

#include <cstdint>
#include <map>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sibling_names.h"
#include "framework/diag_menu.h"

class CMdioMount {
  public:
    // The device comes into `root` with the first bus; its name there is taken at once.
    CMdioMount(CDiagMenu& root, CTreeNames& names);

    // The port of a bus is its property "cell-index", else its place among the MDIO buses of
    // the description, disabled ones too. Throws CDiagException when the bus itself
    // cannot be mounted; what cannot be mounted below it is reported.
    void MountBus(const CDeviceTreeNode& node, const CMatch& match);

  private:
    CDiagMenu& Device();
    uint32_t TakePort(const CDeviceTreeNode& node);

    CDiagMenu& m_root;
    CTreeNames& m_names;
    CDiagMenu* m_device = nullptr;  // owned by the tree
    uint32_t m_buses = 0;           // met so far
    std::map<uint32_t, const CDeviceTreeNode*> m_ports;
};
