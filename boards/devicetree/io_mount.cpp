#include "boards/devicetree/io_mount.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "boards/chips/mapped_io_device.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/property_reader.h"
#include "boards/sim/sim_memory.h"

namespace {

constexpr uint64_t MAX_PORTS = UINT8_MAX;

// What a device tree means where a node does not say.
constexpr uint32_t ADDRESS_CELLS = 2;
constexpr uint32_t SIZE_CELLS = 1;

// How many cells the parent gives the address, or the size, in its children's "reg".
uint32_t CellsBelow(const CDeviceTreeNode& parent, const char* property, uint32_t otherwise) {
    const uint32_t cells = ReadU32(parent, property).value_or(otherwise);
    if (cells != 1 && cells != 2) {
        throw CDiagException("%s: property \"%s\" is %u, should be 1 or 2 for I/O ports",
                             parent.Path().c_str(), property, cells);
    }
    return cells;
}

uint64_t NumberOf(std::span<const uint32_t> cells) {
    uint64_t number = 0;
    for (const uint32_t cell : cells) {
        number = number << 32 | cell;
    }
    return number;
}

}  // namespace

CIoMount::CIoMount(CTreeNames& names, CSimDevice& sim, std::filesystem::path state)
    : m_names(names), m_sim(sim), m_state(std::move(state)) {}

void CIoMount::MountPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu) {
    const CRegion region = RegionOf(node);
    Claim(region);
    const CDeviceRequest request(node, match.compatible, region.address, m_names.Below(menu));
    const std::filesystem::path file = FileOf(region);
    AddNode(menu,
            std::make_unique<CMappedIoDevice>(
                request.TakeName(), request.Text() + ": " + std::to_string(region.ports) + " ports",
                file, static_cast<uint8_t>(region.ports)));
}

CIoMount::CRegion CIoMount::RegionOf(const CDeviceTreeNode& node) {
    const CDeviceTreeNode& parent = *node.Parent();
    const uint32_t address_cells = CellsBelow(parent, "#address-cells", ADDRESS_CELLS);
    const uint32_t size_cells = CellsBelow(parent, "#size-cells", SIZE_CELLS);
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

std::filesystem::path CIoMount::FileOf(const CRegion& region) {
    const std::string name = toString(region.address, VF_HEX) + ".bin";
    try {
        m_sim.LockState(m_state);
        return CSimMemory(m_state / "io-ports" / name, static_cast<uint32_t>(region.ports)).Path();
    } catch (const CDiagException& fault) {
        throw CContentsFault(fault.what());
    }
}
