#include "boards/devicetree/adapter_board.h"

#include <string>

#include "boards/chips/board_slave.h"
#include "boards/devicetree/left_out.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/node_name.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/linux/linux_bus.h"

namespace {

void MountChip(const i2c_driven_chip_t& chip, CLinuxBus& bus, CTreeNames& names) {
    const std::string addr = toString(chip.addr, VF_HEX | VF_PAD);
    const std::string name =
        names.Below(bus).TakeUnique(TypeableName(chip.name + "@" + addr.substr(2)));
    AddNode(bus, std::make_unique<CBoardSlave>(name,
                                               PrintableText(chip.name) + " at " + addr +
                                                   " (the kernel's: driver " +
                                                   PrintableText(chip.driver) + "): plain slave",
                                               board_place_t{&bus, -1, chip.addr}));
}

}  // namespace

std::unique_ptr<CDiagMenu> MountAdapters(const CI2cSysfs& sysfs, II2cDev& dev) {
    auto root = std::make_unique<CDiagMenu>(TMENU, "board", "the I2C adapters of this machine");
    CTreeNames names;
    CLeftOut left_out;
    const std::vector<i2c_adapter_t> adapters = sysfs.Adapters();
    for (const i2c_adapter_t& adapter : adapters) {
        left_out.Step([&] {
            auto& bus = AddNode(*root, std::make_unique<CLinuxBus>(
                                           "i2c-" + std::to_string(adapter.number),
                                           adapter.dev_path + ", " + PrintableText(adapter.name),
                                           adapter.dev_path, sysfs, dev));
            for (const i2c_driven_chip_t& chip : sysfs.DrivenChips()) {
                if (chip.bus == adapter.number) {
                    MountChip(chip, bus, names);
                }
            }
        });
    }
    if (adapters.empty()) {
        throw CDiagException(
            "this machine has no I2C adapter, or none that programs may use: the kernel module "
            "i2c-dev makes them (modprobe i2c-dev)");
    }
    if (adapters.size() == left_out.Texts().size()) {
        throw CDiagException("no I2C adapter of this machine can be opened");
    }
    return root;
}
