#include "boards/devicetree/io_mount.h"

#include <algorithm>
#include <span>
#include <string>

#include "boards/chips/mapped_io_device.h"
#include "boards/devicetree/bus_address.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/property_reader.h"

namespace {

constexpr uint64_t MAX_PORTS = UINT8_MAX;

}  // namespace

void CIoMount::MountPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu) {
    const CRegion region = RegionOf(node);
    Claim(region);
    const CDeviceRequest request(node, match.compatible, region.address, m_names.Below(menu));
    const ports_file_t mapped =
        m_hardware.PortsFile(node, region.address, static_cast<uint32_t>(region.ports));
    const std::string text = request.Text() + ": " + std::to_string(region.ports) + " ports";
    try {
        AddNode(menu, std::make_unique<CMappedIoDevice>(request.TakeName(), text, mapped.file,
                                                        mapped.offset,
                                                        static_cast<uint8_t>(region.ports)));
    } catch (const CDiagException& fault) {
        throw CDiagException("%s: %s", node.Path().c_str(), fault.what());
    }
}

CIoMount::CRegion CIoMount::RegionOf(const CDeviceTreeNode& node) {
    const CDeviceTreeNode& parent = *node.Parent();
    const uint32_t address_cells = CellsBelow(parent, "#address-cells");
    const uint32_t size_cells = CellsBelow(parent, "#size-cells");
    const std::vector<uint32_t> reg = ReadCells(node, "reg");
    if (reg.size() != address_cells + size_cells) {
        throw CDiagException(
            "%s: property \"reg\" has %zu cells, should be %u of an address and %u of a size",
            node.Path().c_str(), reg.size(), address_cells, size_cells);
    }
    const std::span cells(reg);
    const CRegion region = {.address = NumberOf(cells.first(address_cells)),
                            .ports = NumberOf(cells.last(size_cells)),
                            .node = &node};
    if (region.ports == 0 || region.ports > MAX_PORTS) {
        throw CDiagException("%s: property \"reg\" has the size %s, should be 1 to %s ports",
                             node.Path().c_str(), toString(region.ports, 0).c_str(),
                             toString(MAX_PORTS, 0).c_str());
    }
    return region;
}

// One file cannot be two devices', and one address has one file.
void CIoMount::Claim(const CRegion& region) {
    for (const CRegion& other : m_regions) {
        if (region.address - other.address < other.ports ||
            other.address - region.address < region.ports) {
            throw CDiagException("%s: address %s is already taken by %s",
                                 region.node->Path().c_str(),
                                 toString(std::max(region.address, other.address), VF_HEX).c_str(),
                                 other.node->Path().c_str());
        }
    }
    m_regions.push_back(region);
}
