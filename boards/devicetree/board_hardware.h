// What stands behind the tree of a description: simulated hardware, or that of the
// machine.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "boards/devicetree/device_request.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/root_bus/root_bus.h"
#include "framework/diag_menu.h"

struct CBinding;

// Where I/O ports are mapped from.
struct ports_file_t {
    std::filesystem::path file;
    uint64_t offset;  // of the first port
};

class IBoardHardware {
  public:
    // To be called with the device of a chip when it stands in the tree.
    using CShow = std::function<void(CDiagMenu& device)>;

    virtual ~IBoardHardware() = default;

    // Before anything is mounted below `root`, and after everything is. `names`
    // lasts until then.
    virtual void Begin(CDiagMenu& root, CTreeNames& names) = 0;
    virtual void End(CDiagMenu& root) = 0;

    // All below throw CDiagException, naming the node, when it cannot be had.

    // Whether the node is a bus that is there, whatever it is compatible with, if with
    // anything.
    virtual bool HasBus(const CDeviceTreeNode& node) const = 0;
    virtual std::unique_ptr<CRootBus> CreateBus(const CDeviceRequest& request,
                                                const std::string& name) = 0;

    // Whether somebody else drives the multiplexer at that address: its channels are
    // buses of their own then.
    virtual bool IsMuxDriven(const CI2cWire& wire, uint8_t addr) const = 0;
    // Such a channel; null when it is not there.
    virtual std::unique_ptr<CRootBus> CreateChannelBus(const CI2cWire& wire, uint8_t addr,
                                                       unsigned int channel,
                                                       const std::string& name) = 0;

    // Puts a chip of the description on its wire.
    virtual CShow PlaceChip(const CDeviceRequest& request, const CBinding& binding, uint8_t addr,
                            const CI2cWire& wire) = 0;
    // What is to be said of the chip at that address besides; may be empty.
    virtual std::string NoteOf(const CI2cWire& wire, uint8_t addr) const = 0;

    // `address` is that of the node's own bus.
    virtual ports_file_t PortsFile(const CDeviceTreeNode& node, uint64_t address,
                                   uint32_t ports) = 0;
};
