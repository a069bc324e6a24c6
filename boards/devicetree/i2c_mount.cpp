#include "boards/devicetree/i2c_mount.h"

#include <memory>
#include <optional>
#include <vector>

#include "boards/devicetree/i2c_nodes.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/node_name.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"

namespace {

constexpr uint32_t LAST_ADDR = 0x7F;
constexpr uint8_t MODULE_ADDR = 0x50;     // of every pluggable module's serial ID
constexpr uint32_t OWN_SLAVE = 1U << 30;  // in "reg": other masters find this controller there

bool IsOwnSlave(const CDeviceTreeNode& node) {
    const std::vector<uint32_t> regs = ReadCells(node, "reg");
    return regs.size() == 1 && (regs.front() & OWN_SLAVE) != 0;
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
    if (node.Find("reg") == nullptr) {
        diag_pf_send_log(LW_INFO,
                         "%s: has no property \"reg\", which controller it is stays open\n",
                         node.Path().c_str());
    }
    const CDeviceRequest request(node, match.compatible, std::nullopt, m_names.Below(menu));
    CRootBus& bus =
        AddNode(menu, m_hardware.CreateBus(request, TakeBusName(WantedBusName(node), menu)));
    MountWire(node, m_wires.emplace_back(bus));
}

// Its label, else the number that the description gives it, else the node's name.
std::string CI2cMount::WantedBusName(const CDeviceTreeNode& node) const {
    const std::optional<uint32_t> number = m_aliases.NumberOf(node);
    const bool has_label = !ReadString(node, "label").value_or("").empty();
    return number && !has_label ? "i2c-" + std::to_string(*number) : TypeableName(WantedName(node));
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
        m_left_out.Step([&] { MountNode(*child, wire); });
    }
}

void CI2cMount::MountNode(const CDeviceTreeNode& node, CI2cWire& wire) {
    const CMatch match = MatchCompatible(node);
    if (IsOwnSlave(node)) {
        m_left_out.Add(node, match.compatible, "an address of the controller itself, as a slave");
        return;
    }
    // Chips that no table knows may have several addresses.
    const auto require = match.binding == nullptr ? RequireFirstReg : RequireReg;
    const auto addr = static_cast<uint8_t>(require(node, 1, LAST_ADDR, "a 7-bit address"));
    if (IsDisabled(node)) {
        // Its address is free: alternatives of one place are described this way.
        m_left_out.Add(node, match.compatible, "disabled");
        return;
    }
    if (match.binding != nullptr && match.binding->kind != EBindingKind::I2C_DEVICE &&
        match.binding->kind != EBindingKind::I2C_MUX) {
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
    request.note = m_hardware.NoteOf(wire, addr);
    if (match.binding != nullptr) {
        MountKnown(request, *match.binding, addr, wire);
        return;
    }
    wire.Claim(addr, 1, node);
    MountUnknown(request, wire);
}

void CI2cMount::MountKnown(CDeviceRequest request, const CBinding& binding, uint8_t addr,
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
    if (binding.kind == EBindingKind::I2C_MUX && m_hardware.IsMuxDriven(wire, addr)) {
        MountDrivenMux(request, addr, wire);
        return;
    }
    const IBoardHardware::CShow show = m_hardware.PlaceChip(request, binding, addr, wire);
    CDiagMenu& device = AddNode(wire.Menu(), binding.create_node(request));
    wire.Name(node, device.GetName());
    show(device);
    if (binding.kind == EBindingKind::I2C_MUX) {
        MountSwitch(node, dynamic_cast<CDiagI2cSwitch&>(device), wire);
    }
}

void CI2cMount::MountUnknown(const CDeviceRequest& request, const CI2cWire& wire) {
    CDiagMenu& device = AddNode(wire.Menu(), CreateUnknownSlave(request));
    wire.Name(request.node, device.GetName());
    ShowBelow(request.node, device);
}

// What a device that is not known holds can be shown, but nothing can be said of it; but
// for the buses that the kernel makes of it, as where it is a multiplexer.
void CI2cMount::ShowBelow(const CDeviceTreeNode& parent, CDiagMenu& menu) {
    for (const auto& child : parent.Children()) {
        m_left_out.Step([&] {
            const CMatch match = MatchCompatible(*child);
            if (m_hardware.HasBus(*child) && !IsDisabled(*child)) {
                MountBus(*child, match, menu);
                return;
            }
            const CDeviceRequest request(*child, match.compatible, std::nullopt,
                                         m_names.Below(menu));
            CDiagMenu& plain =
                AddNode(menu, CreatePlainNode(request, "below a device that is not known"));
            ShowBelow(*child, plain);
        });
    }
}

void CI2cMount::MountSwitch(const CDeviceTreeNode& node, CDiagI2cSwitch& mux,
                            const CI2cWire& above) {
    std::vector<CI2cWire*> channels;
    channels.reserve(static_cast<size_t>(mux.getNumberofChannels()));
    for (int ch = 0; ch < mux.getNumberofChannels(); ++ch) {
        channels.push_back(&m_wires.emplace_back(above, mux, static_cast<int8_t>(ch)));
    }
    MountChannels(node, channels);
}

// The tree looks as it does where the multiplexer is driven from here, but its channels
// are buses that take care of themselves.
void CI2cMount::MountDrivenMux(const CDeviceRequest& request, uint8_t addr, const CI2cWire& above) {
    const mux_part_t& part = RequireMuxPart(request);
    const CNumberedName name = TakeMuxName(request);
    CDiagMenu& menu =
        AddNode(above.Menu(),
                std::make_unique<CDiagMenu>(TMENU, name.base + "-" + std::to_string(name.number),
                                            request.Text() + ": multiplexer"));
    above.Name(request.node, menu.GetName());
    std::vector<CI2cWire*> channels;
    for (unsigned int ch = 0; ch < part.channels; ++ch) {
        auto bus = m_hardware.CreateChannelBus(above, addr, ch, "ch" + std::to_string(ch));
        channels.push_back(bus == nullptr
                               ? nullptr
                               : &m_wires.emplace_back(AddNode(menu, std::move(bus)), &above));
    }
    MountChannels(request.node, channels);
}

void CI2cMount::MountChannels(const CDeviceTreeNode& node, const std::vector<CI2cWire*>& channels) {
    std::vector<const CDeviceTreeNode*> described(channels.size());
    for (const auto& child : ChannelsOf(node).Children()) {
        m_left_out.Step([&] {
            const auto last = static_cast<uint32_t>(channels.size() - 1);
            const uint32_t ch = RequireReg(*child, 0, last, "a channel");
            if (IsDisabled(*child)) {
                m_left_out.Add(*child, {}, "disabled");
                return;
            }
            if (described[ch] != nullptr) {
                throw CDiagException("%s: channel %u is already described by %s",
                                     child->Path().c_str(), ch, described[ch]->Path().c_str());
            }
            described[ch] = child.get();
            if (channels[ch] == nullptr) {
                throw CDiagException("%s: the kernel has no adapter for channel %u",
                                     child->Path().c_str(), ch);
            }
            MountWire(*child, *channels[ch]);
        });
    }
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
