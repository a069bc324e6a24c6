// Mounts the MDIO buses of a description with the PHYs on them, all below the one device
// "mdio" that reaches them.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/left_out.h"
#include "boards/devicetree/sibling_names.h"
#include "framework/diag_menu.h"

class CMdioMount {
  public:
    // The device comes into `root` with the first bus; its name there is taken at once.
    CMdioMount(CDiagMenu& root, CTreeNames& names, CLeftOut& left_out);

    // The port of a bus is its property "cell-index", else its place among the MDIO buses of
    // the description, disabled ones too. Throws CDiagException when the bus itself
    // cannot be mounted; what cannot be mounted below it is reported.
    void MountBus(const CDeviceTreeNode& node, const CMatch& match);

  private:
    using CClaims = std::map<uint32_t, const CDeviceTreeNode*>;

    // `claims` are the addresses that are taken on the bus.
    void MountPhy(const CDeviceTreeNode& node, uint32_t port, CDiagMenu& bus, CClaims& claims);
    // `what` names the number in a complaint.
    static void Claim(CClaims& claims, uint32_t number, const CDeviceTreeNode& node,
                      const std::string& what);
    CDiagMenu& Device();
    uint32_t TakePort(const CDeviceTreeNode& node);

    CDiagMenu& m_root;
    CTreeNames& m_names;
    CLeftOut& m_left_out;
    CDiagMenu* m_device = nullptr;  // owned by the tree
    uint32_t m_buses = 0;           // met so far
    CClaims m_ports;
};
