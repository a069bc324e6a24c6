// Mounts the I2C buses of a description with everything on them: devices,
// multiplexers at any depth, and modules that name their bus from elsewhere.
#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <unordered_map>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/sim/sim_device.h"

class CI2cMount {
  public:
    // Memories live in files below `state`, and begin with what the file of the
    // same place below `folder`/images holds. All references outlive the mounting.
    CI2cMount(const CDeviceTree& tree, CTreeNames& names, CSimDevice& sim,
              const std::filesystem::path& folder, std::filesystem::path state)
        : m_tree(tree),
          m_names(names),
          m_sim(sim),
          m_images(folder / "images"),
          m_tables(folder / "xml"),
          m_state(std::move(state)) {}

    // Both throw CDiagException when the node itself cannot be mounted; what
    // cannot be mounted below it is reported.
    void MountBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu);
    // To be called when all buses are there.
    void MountModule(const CDeviceTreeNode& node, const CMatch& match);

    // Warns of devices behind a channel whose address answers further up too.
    void WarnOfSharedAddresses() const;

  private:
    std::string TakeBusName(const std::string& wanted, CDiagMenu& menu);
    void MountWire(const CDeviceTreeNode& node, CI2cWire& wire);
    void MountNode(const CDeviceTreeNode& node, CI2cWire& wire);
    void MountDevice(const CDeviceTreeNode& node, const CMatch& match, uint8_t addr,
                     CI2cWire& wire);
    void MountKnown(CDeviceRequest& request, const CBinding& binding, uint8_t addr, CI2cWire& wire);
    // To be called before a memory is made.
    void LockState() const;
    void MountUnknown(const CDeviceRequest& request, CDiagMenu& menu);
    void ShowBelow(const CDeviceTreeNode& parent, CDiagMenu& menu);
    CSimParts CreateChip(const CDeviceRequest& request, const CBinding& binding, uint8_t addr,
                         CI2cWire& wire) const;
    void MountChannels(const CDeviceTreeNode& node, CDiagI2cSwitch& mux, CSimMux& chip,
                       const CI2cWire& above);
    std::string TakeSimName(const CDiagObj& device);

    const CDeviceTree& m_tree;
    CTreeNames& m_names;
    CSimDevice& m_sim;
    const std::filesystem::path m_images;
    const std::filesystem::path m_tables;
    const std::filesystem::path m_state;
    // The state folder and the fault commands know buses by their names alone.
    CSiblingNames m_bus_names;
    std::deque<CI2cWire> m_wires;
    std::unordered_map<const CDeviceTreeNode*, CI2cWire*> m_wire_of;  // of buses and channels
};
