// What an EEPROM of the description is: read once from its node, for the
// simulated chip and for the device in the tree alike.
#pragma once

#include <cstdint>
#include <string>

#include "boards/devicetree/device_tree_node.h"

struct eeprom_part_t {
    uint32_t size;       // bytes, all slave addresses together
    uint16_t page;       // bytes that one write may carry
    uint8_t addr_bytes;  // memory address bytes: 1 or 2
    uint8_t addresses;   // slave addresses, a power of two; their low bits are address bits
    bool read_only;
    // Alike, at addresses one after another, and each a device of its own.
    uint8_t memories = 1;

    // A memory address of the library has 16 bits. A part of one address byte
    // stays within them, so it is one device; of a larger part each slave
    // address is one.
    uint8_t Devices() const { return addr_bytes == 1 ? uint8_t{1} : addresses; }
};

// All throw CDiagException, naming the node, when there can be no such part.
// The properties "size", "pagesize", "address-width" and "read-only" override
// what the part is.

// The presence detect EEPROM of a memory module; answers at 0x50 to 0x57.
eeprom_part_t DescribeSpd(const CDeviceTreeNode& node, const std::string& compatible);
// A member of the AT24 family, by the part's name in the compatible.
eeprom_part_t DescribeAt24(const CDeviceTreeNode& node, const std::string& compatible);
// A board's own EEPROMs: a 24C64 unless its properties say otherwise.
eeprom_part_t DescribeMfgEeprom(const CDeviceTreeNode& node, const std::string& compatible);
eeprom_part_t DescribeParamEeprom(const CDeviceTreeNode& node, const std::string& compatible);
// The memories of a pluggable optical module: the serial ID, and the diagnostics
// behind it. Its node describes the cage, so no property counts.
eeprom_part_t DescribeModuleEeprom(const CDeviceTreeNode& node, const std::string& compatible);
