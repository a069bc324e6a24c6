#include "boards/devicetree/bus_address.h"

#include <string_view>
#include <vector>

#include "boards/devicetree/property_reader.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

namespace {

// What a device tree means where a node does not say.
constexpr uint32_t ADDRESS_CELLS = 2;
constexpr uint32_t SIZE_CELLS = 1;

// One bus further up.
uint64_t AddressAbove(const CDeviceTreeNode& bus, uint64_t address) {
    const CDeviceTreeProperty* ranges = bus.Find("ranges");
    if (ranges != nullptr && ranges->value.empty()) {
        return address;  // maps all addresses to themselves
    }
    const std::vector<uint32_t> cells = ReadCells(bus, "ranges");
    const uint32_t child = CellsBelow(bus, "#address-cells");
    const uint32_t parent = CellsBelow(*bus.Parent(), "#address-cells");
    const uint32_t size = CellsBelow(bus, "#size-cells");
    const size_t entry = child + parent + size;
    if (cells.size() % entry != 0) {
        throw CDiagException("%s: property \"ranges\" has %zu cells, should be a multiple of %zu",
                             bus.Path().c_str(), cells.size(), entry);
    }
    for (std::span<const uint32_t> rest(cells); !rest.empty(); rest = rest.subspan(entry)) {
        const uint64_t first = NumberOf(rest.first(child));
        if (address - first < NumberOf(rest.subspan(child + parent, size))) {
            return NumberOf(rest.subspan(child, parent)) + (address - first);
        }
    }
    throw CDiagException("%s: no entry of property \"ranges\" has the address %s",
                         bus.Path().c_str(), toString(address, VF_HEX).c_str());
}

}  // namespace

uint64_t NumberOf(std::span<const uint32_t> cells) {
    uint64_t number = 0;
    for (const uint32_t cell : cells) {
        number = number << 32 | cell;
    }
    return number;
}

uint32_t CellsBelow(const CDeviceTreeNode& parent, const char* property) {
    const uint32_t otherwise =
        std::string_view(property) == "#size-cells" ? SIZE_CELLS : ADDRESS_CELLS;
    const uint32_t cells = ReadU32(parent, property).value_or(otherwise);
    if (cells != 1 && cells != 2) {
        throw CDiagException("%s: property \"%s\" is %u, should be 1 or 2", parent.Path().c_str(),
                             property, cells);
    }
    return cells;
}

uint64_t ProcessorAddress(const CDeviceTreeNode& node, uint64_t address) {
    for (const CDeviceTreeNode* bus = node.Parent(); bus->Parent() != nullptr;
         bus = bus->Parent()) {
        address = AddressAbove(*bus, address);
    }
    return address;
}
