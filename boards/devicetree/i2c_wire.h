// A piece of wire that devices of the description hang on: a root bus, or one
// channel of a multiplexer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "boards/chips/board_place.h"
#include "boards/devicetree/device_tree_node.h"
#include "boards/root_bus/root_bus.h"
#include "framework/diag_menu.h"
#include "i2c/diag_i2c_switch.h"

class CI2cWire {
  public:
    using CClaims = std::map<uint8_t, const CDeviceTreeNode*>;

    // A bus; `above` is the wire of the multiplexer whose channel it is, if the kernel
    // makes a bus of that.
    explicit CI2cWire(CRootBus& bus, const CI2cWire* above = nullptr);
    // Channel `ch` of a switch that hangs on `above`.
    CI2cWire(const CI2cWire& above, CDiagI2cSwitch& mux, int8_t ch);

    // The tree node under which the devices of this wire stand.
    CDiagMenu& Menu() const { return m_menu; }
    // The root bus, or the switch that the wire is a channel of.
    CI2cDevice& Bus() const { return m_bus; }
    CRootBus& Root() const { return m_root; }
    // Of the switch that the wire is a channel of; -1 on a root bus.
    int8_t Channel() const { return m_channel; }
    board_place_t Place(uint8_t addr) const { return {&m_bus, m_channel, addr}; }
    // Where the wire's memories keep their contents: its place in the topology,
    // as in "i2c-0/0x70/ch2".
    const std::filesystem::path& Folder() const { return m_folder; }
    // The wire that the switch hangs on; null for a root bus.
    const CI2cWire* Above() const { return m_above; }

    // Takes `count` addresses for a node, all or none; throws CDiagException
    // with both nodes when another one has one of them.
    void Claim(uint8_t addr, unsigned int count, const CDeviceTreeNode& node);
    const CClaims& Claims() const { return m_claims; }
    // Tells who scans the wire how the addresses that a node claimed are called.
    void Name(const CDeviceTreeNode& claimant, const std::string& name) const;
    // The node that has the address, or null.
    const CDeviceTreeNode* ClaimantOf(uint8_t addr) const;

  private:
    CI2cDevice& m_bus;
    CRootBus& m_root;
    CDiagMenu& m_menu;
    const int8_t m_channel;
    const std::filesystem::path m_folder;
    const CI2cWire* const m_above;
    CClaims m_claims;
};
