// A device of the description on its way into the tree.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/eeprom_part.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/devicetree/sibling_names.h"

struct CDeviceRequest {
    // Reads the node's label: throws CDiagException when that is no text.
    CDeviceRequest(const CDeviceTreeNode& of_node, std::string compatible_text,
                   std::optional<uint64_t> bus_addr, CSiblingNames& sibling_names);

    // The name of the one node that will stand for the device.
    std::string TakeName() const { return names.TakeUnique(wanted); }
    // "COMPATIBLE at 0xADDR", as far as there is either, and the note.
    std::string Text() const;

    const CDeviceTreeNode& node;
    const std::string compatible;        // the one that was matched, else the first; may be empty
    const std::optional<uint64_t> addr;  // on its bus
    const std::string wanted;            // the name that it asks for
    CSiblingNames& names;                // those that are taken where it will stand
    const CI2cWire* wire = nullptr;      // what a device on I2C hangs on
    const eeprom_part_t* eeprom = nullptr;  // what an EEPROM is
    std::filesystem::path tables;           // the folder of the board's XML tables
    std::string note;                       // what is to be said of it besides; may be empty
};
