#include "boards/devicetree/io_mount.h"

#include <vector>

#include "boards/chips/mapped_io_device.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/property_reader.h"
#include "boards/sim/sim_memory.h"

namespace {

constexpr uint32_t MAX_PORTS = UINT8_MAX;

// The file of the ports, made where it is missing.
std::filesystem::path FileOf(uint32_t address, uint32_t ports, CSimDevice& sim,
                             const std::filesystem::path& state) {
    const std::string name = toString(address, VF_HEX) + std::string(".bin");
    try {
        sim.LockState(state);
        return CSimMemory(state / "io-ports" / name, ports).Path();
    } catch (const CDiagException& fault) {
        throw CContentsFault(fault.what());
    }
}

}  // namespace

void MountIoPorts(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu,
                  CTreeNames& names, CSimDevice& sim, const std::filesystem::path& state) {
    const std::vector<uint32_t> reg = ReadCells(node, "reg");
    if (reg.size() < 2) {
        throw CDiagException("%s: property \"reg\" has %zu cells, should be an address and a size",
                             node.Path().c_str(), reg.size());
    }
    const uint32_t address = reg[reg.size() - 2];
    const uint32_t ports = reg.back();
    if (ports == 0 || ports > MAX_PORTS) {
        throw CDiagException("%s: property \"reg\" has the size %u, should be 1 to %u ports",
                             node.Path().c_str(), ports, MAX_PORTS);
    }
    const CDeviceRequest request(node, match.compatible, address, names.Below(menu));
    const std::filesystem::path file = FileOf(address, ports, sim, state);
    AddNode(menu, std::make_unique<CMappedIoDevice>(
                      request.TakeName(), request.Text() + ": " + std::to_string(ports) + " ports",
                      file, static_cast<uint8_t>(ports)));
}
