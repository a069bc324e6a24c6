#include "boards/devicetree/i2c_mount.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "boards/chips/board_node_path.h"
#include "boards/chips/board_sfp_eeprom.h"
#include "boards/devicetree/i2c_nodes.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"

namespace {

constexpr uint32_t STANDARD_CLOCK_HZ = 100'000;
constexpr uint32_t MAX_CLOCK_HZ = 5'000'000;
constexpr uint32_t LAST_ADDR = 0x7F;
constexpr uint8_t MODULE_ADDR = 0x50;  // of every pluggable module's serial ID

uint32_t ClockHz(const CDeviceTreeNode& node) {
    const uint32_t hz = ReadU32(node, "clock-frequency").value_or(STANDARD_CLOCK_HZ);
    if (hz == 0 || hz > MAX_CLOCK_HZ) {
        throw CDiagException("%s: property \"clock-frequency\" is %u, should be 1 to %u",
                             node.Path().c_str(), hz, MAX_CLOCK_HZ);
    }
    return hz;
}

// The node whose children are the channels: the multiplexer's own node, or the
// one that it keeps for them beside other children.
const CDeviceTreeNode& ChannelsOf(const CDeviceTreeNode& mux) {
    for (const auto& child : mux.Children()) {
        if (child->Name() == "i2c-mux") {
            return *child;
        }
    }
    return mux;
}

// The bus must know how the part is addressed before anything is written there.
void Declare(const CDeviceTreeNode& node, const eeprom_part_t& part, uint8_t addr, CRootBus& bus) {
    try {
        for (unsigned int memory = 0; memory < part.memories; ++memory) {
            bus.DeclareEeprom({.addr = static_cast<uint8_t>(addr + memory * part.addresses),
                               .addresses = part.addresses,
                               .addr_bytes = part.addr_bytes,
                               .page = part.page});
        }
    } catch (const CDiagException& fault) {
        throw CDiagException("%s: %s", node.Path().c_str(), fault.what());
    }
}

}  // namespace

void CI2cMount::MountBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu) {
    const uint32_t hz = ClockHz(node);
    if (node.Find("reg") == nullptr) {
        diag_pf_send_log(LW_INFO,
                         "%s: has no property \"reg\", which controller it is stays open\n",
                         node.Path().c_str());
    }
    const CDeviceRequest request(node, match.compatible, std::nullopt, m_names.Below(menu));
    CSimBus& bus = AddNode(
        menu,
        std::make_unique<CSimBus>(TakeBusName(request.wanted, menu),
                                  request.Text() + ", simulated, " + toString(hz, 0) + " Hz", hz));
    m_sim.AddBus(bus);
    MountWire(node, m_wires.emplace_back(bus));
}

// A name that neither another bus nor a sibling has.
std::string CI2cMount::TakeBusName(const std::string& wanted, CDiagMenu& menu) {
    CSiblingNames& siblings = m_names.Below(menu);
    std::string name = m_bus_names.TakeUnique(wanted);
    while (!siblings.Take(name)) {
        name = m_bus_names.TakeUnique(wanted);
    }
    return name;
}

void CI2cMount::MountWire(const CDeviceTreeNode& node, CI2cWire& wire) {
    m_wire_of[&node] = &wire;
    for (const auto& child : node.Children()) {
        MountStep([&] { MountNode(*child, wire); });
    }
}

void CI2cMount::MountNode(const CDeviceTreeNode& node, CI2cWire& wire) {
    const CMatch match = MatchCompatible(node);
    const auto addr = static_cast<uint8_t>(RequireReg(node, 1, LAST_ADDR, "a 7-bit address"));
    if (IsDisabled(node)) {
        // Its address is free: alternatives of one place are described this way.
        const CDeviceRequest request(node, match.compatible, addr, m_names.Below(wire.Menu()));
        AddNode(wire.Menu(), CreatePlainNode(request, "disabled"));
        return;
    }
    if (match.binding != nullptr && match.binding->kind != EBindingKind::I2C_DEVICE) {
        throw CDiagException("%s: \"%s\" is not a device on an I2C bus", node.Path().c_str(),
                             PrintableText(match.compatible).c_str());
    }
    MountDevice(node, match, addr, wire);
}

void CI2cMount::MountModule(const CDeviceTreeNode& node, const CMatch& match) {
    const uint32_t phandle = RequireU32(node, "i2c-bus");
    const CDeviceTreeNode* target = m_tree.NodeOf(phandle);
    const auto wire = m_wire_of.find(target);
    if (wire == m_wire_of.end()) {
        const std::string found = target == nullptr ? "no node" : target->Path();
        throw CDiagException(
            "%s: property \"i2c-bus\" names %s (phandle 0x%x), should be a "
            "mounted I2C bus or channel",
            node.Path().c_str(), found.c_str(), phandle);
    }
    MountDevice(node, match, MODULE_ADDR, *wire->second);
}

void CI2cMount::MountDevice(const CDeviceTreeNode& node, const CMatch& match, uint8_t addr,
                            CI2cWire& wire) {
    CDeviceRequest request(node, match.compatible, addr, m_names.Below(wire.Menu()));
    request.wire = &wire;
    request.tables = m_tables;
    if (match.binding != nullptr) {
        MountKnown(request, *match.binding, addr, wire);
        return;
    }
    wire.Claim(addr, 1, node);
    MountUnknown(request, wire.Menu());
}

void CI2cMount::MountKnown(CDeviceRequest& request, const CBinding& binding, uint8_t addr,
                           CI2cWire& wire) {
    const CDeviceTreeNode& node = request.node;
    eeprom_part_t eeprom = {};
    if (binding.describe_eeprom != nullptr) {
        eeprom = binding.describe_eeprom(node, request.compatible);
        if (addr % eeprom.addresses != 0) {
            throw CDiagException("%s: a chip of %u addresses cannot begin at 0x%02x",
                                 node.Path().c_str(), unsigned{eeprom.addresses}, unsigned{addr});
        }
        wire.Claim(addr, unsigned{eeprom.addresses} * eeprom.memories, node);
        Declare(node, eeprom, addr, wire.Root());
        request.eeprom = &eeprom;
    } else {
        wire.Claim(addr, 1, node);
    }
    const CSimParts chip = CreateChip(request, binding, addr, wire);

    CDiagMenu& device = AddNode(wire.Menu(), binding.create_node(request));
    if (chip.memory != nullptr) {
        m_sim.AddContents(TakeSimName(device), *chip.memory);
    }
    if (chip.diagnostics != nullptr) {
        m_sim.AddContents(TakeSimName(*device.FindChild(CBoardSfpEeprom::DIAGNOSTICS)),
                          *chip.diagnostics);
    }
    if (chip.registers != nullptr) {
        m_sim.AddOutside(TakeSimName(device), *chip.registers);
    }
    if (chip.mux != nullptr) {
        MountChannels(node, dynamic_cast<CDiagI2cSwitch&>(device), *chip.mux, wire);
    }
}

CSimParts CI2cMount::CreateChip(const CDeviceRequest& request, const CBinding& binding,
                                uint8_t addr, CI2cWire& wire) const {
    if (binding.create_chip == nullptr) {
        return {};
    }
    if (request.eeprom != nullptr) {
        LockState();
    }
    const std::filesystem::path file = wire.Folder() / ContentsFile(addr);
    return binding.create_chip({.node = request.node,
                                .compatible = request.compatible,
                                .addr = addr,
                                .wire = wire,
                                .eeprom = request.eeprom,
                                .contents = m_state / file,
                                .image = m_images / file});
}

void CI2cMount::LockState() const {
    try {
        m_sim.LockState(m_state);
    } catch (const CDiagException& fault) {
        throw CContentsFault(fault.what());
    }
}

void CI2cMount::MountUnknown(const CDeviceRequest& request, CDiagMenu& menu) {
    ShowBelow(request.node, AddNode(menu, CreateUnknownSlave(request)));
}

// What a device that is not known holds can be shown, but nothing can be said of it.
void CI2cMount::ShowBelow(const CDeviceTreeNode& parent, CDiagMenu& menu) {
    for (const auto& child : parent.Children()) {
        MountStep([&] {
            const CDeviceRequest request(*child, MatchCompatible(*child).compatible, std::nullopt,
                                         m_names.Below(menu));
            CDiagMenu& plain =
                AddNode(menu, CreatePlainNode(request, "below a device that is not known"));
            ShowBelow(*child, plain);
        });
    }
}

void CI2cMount::MountChannels(const CDeviceTreeNode& node, CDiagI2cSwitch& mux, CSimMux& chip,
                              const CI2cWire& above) {
    std::vector<CI2cWire*> channels(static_cast<size_t>(mux.getNumberofChannels()));
    for (unsigned int ch = 0; ch < channels.size(); ++ch) {
        channels[ch] = &m_wires.emplace_back(above, mux, mux.getI2cAddr(), static_cast<int8_t>(ch),
                                             chip.Channel(ch));
    }
    std::vector<const CDeviceTreeNode*> described(channels.size());
    for (const auto& child : ChannelsOf(node).Children()) {
        MountStep([&] {
            const auto last = static_cast<uint32_t>(channels.size() - 1);
            const uint32_t ch = RequireReg(*child, 0, last, "a channel");
            if (IsDisabled(*child)) {
                return;
            }
            if (described[ch] != nullptr) {
                throw CDiagException("%s: channel %u is already described by %s",
                                     child->Path().c_str(), ch, described[ch]->Path().c_str());
            }
            described[ch] = child.get();
            MountWire(*child, *channels[ch]);
        });
    }
}

// Below the simulation the place in the tree is one word:
// "i2c-0.pca9547-0.ch0.spd-0".
std::string CI2cMount::TakeSimName(const CDiagObj& device) {
    std::string name = NodePath(device).substr(1);
    std::replace(name.begin(), name.end(), '/', '.');
    return m_names.Below(m_sim).TakeUnique(name);
}

void CI2cMount::WarnOfSharedAddresses() const {
    for (const CI2cWire& wire : m_wires) {
        for (const auto& [addr, node] : wire.Claims()) {
            const CDeviceTreeNode* other = nullptr;
            for (const CI2cWire* up = wire.Above(); up != nullptr && other == nullptr;
                 up = up->Above()) {
                other = up->ClaimantOf(addr);
            }
            if (other != nullptr) {
                diag_pf_send_log(LW_WARN,
                                 "%s: address 0x%02x is also that of %s, which is nearer to the "
                                 "root bus: both answer while the path is open\n",
                                 node->Path().c_str(), unsigned{addr}, other->Path().c_str());
            }
        }
    }
}
