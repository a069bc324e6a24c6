// Mounts the I2C buses of a description with everything on them: devices,
// multiplexers at any depth, and modules that name their bus from elsewhere.
#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "boards/devicetree/aliases.h"
#include "boards/devicetree/board_hardware.h"
#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/devicetree/left_out.h"
#include "boards/devicetree/sibling_names.h"

class CI2cMount {
  public:
    // `tables` is the folder of the board's XML tables. All references outlive the
    // mounting.
    CI2cMount(const CDeviceTree& tree, CTreeNames& names, IBoardHardware& hardware,
              CLeftOut& left_out, std::filesystem::path tables)
        : m_tree(tree),
          m_names(names),
          m_hardware(hardware),
          m_left_out(left_out),
          m_tables(std::move(tables)),
          m_aliases(tree.Root(), "i2c") {}

    // Both throw CDiagException when the node itself cannot be mounted; what
    // cannot be mounted below it is reported.
    void MountBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu);
    // To be called when all buses are there.
    void MountModule(const CDeviceTreeNode& node, const CMatch& match);

    // Warns of devices behind a channel whose address answers further up too.
    void WarnOfSharedAddresses() const;

  private:
    std::string WantedBusName(const CDeviceTreeNode& node) const;
    std::string TakeBusName(const std::string& wanted, CDiagMenu& menu);
    void MountWire(const CDeviceTreeNode& node, CI2cWire& wire);
    void MountNode(const CDeviceTreeNode& node, CI2cWire& wire);
    void MountDevice(const CDeviceTreeNode& node, const CMatch& match, uint8_t addr,
                     CI2cWire& wire);
    void MountKnown(CDeviceRequest request, const CBinding& binding, uint8_t addr, CI2cWire& wire);
    void MountUnknown(const CDeviceRequest& request, const CI2cWire& wire);
    void ShowBelow(const CDeviceTreeNode& parent, CDiagMenu& menu);
    void MountSwitch(const CDeviceTreeNode& node, CDiagI2cSwitch& mux, const CI2cWire& above);
    void MountDrivenMux(const CDeviceRequest& request, uint8_t addr, const CI2cWire& above);
    void MountChannels(const CDeviceTreeNode& node, const std::vector<CI2cWire*>& channels);

    const CDeviceTree& m_tree;
    CTreeNames& m_names;
    IBoardHardware& m_hardware;
    CLeftOut& m_left_out;
    const std::filesystem::path m_tables;
    const CAliases m_aliases;
    // State folders and the commands of the simulation know buses by their names alone.
    CSiblingNames m_bus_names;
    std::deque<CI2cWire> m_wires;
    std::unordered_map<const CDeviceTreeNode*, CI2cWire*> m_wire_of;  // of buses and channels
};
