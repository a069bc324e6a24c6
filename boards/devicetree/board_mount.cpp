#include "boards/devicetree/board_mount.h"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/i2c_wire.h"
#include "boards/devicetree/node_name.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "boards/sim/sim_bus.h"
#include "boards/sim/sim_device.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

namespace {

constexpr uint32_t STANDARD_CLOCK_HZ = 100'000;
constexpr uint32_t MAX_CLOCK_HZ = 5'000'000;
constexpr uint32_t LAST_I2C_ADDR = 0x7F;
constexpr uint32_t LAST_MDIO_ADDR = 31;
constexpr uint8_t MODULE_ADDR = 0x50;  // of every pluggable module's serial ID

std::string AddrText(uint8_t addr) {
    return toString(addr, VF_HEX | VF_PAD);
}

bool IsDisabled(const CDeviceTreeNode& node) {
    const std::optional<std::string> status = ReadString(node, "status");
    return status && *status != "okay" && *status != "ok";
}

// The value of "reg" when that is a number in the range.
uint32_t RequireReg(const CDeviceTreeNode& node, uint32_t first, uint32_t last, const char* what) {
    const uint32_t reg = RequireU32(node, "reg");
    if (reg < first || reg > last) {
        throw CDiagException("%s: property \"reg\" is 0x%x, should be %s from 0x%x to 0x%x",
                             node.Path().c_str(), reg, what, first, last);
    }
    return reg;
}

uint32_t ClockHz(const CDeviceTreeNode& node) {
    const uint32_t hz = ReadU32(node, "clock-frequency").value_or(STANDARD_CLOCK_HZ);
    if (hz == 0 || hz > MAX_CLOCK_HZ) {
        throw CDiagException("%s: property \"clock-frequency\" is %u, should be 1 to %u",
                             node.Path().c_str(), hz, MAX_CLOCK_HZ);
    }
    return hz;
}

// Reports what `step` throws and goes on: one bad node leaves the others alone.
template <class Step>
void Guarded(Step step) {
    try {
        step();
    } catch (const CContentsFault&) {
        throw;
    } catch (const CDiagException& fault) {
        diag_pf_send_log(LW_WARN, "left out: %s\n", fault.what());
    }
}

template <class Node>
Node& AddNode(CDiagMenu& menu, std::unique_ptr<Node> node) {
    Node& added = *node;
    menu.AddChild(node.release(), CDiagObj::NO_SORT);
    return added;
}

class CBoardMount {
  public:
    CBoardMount(const CDeviceTree& tree, const std::filesystem::path& images,
                const std::filesystem::path& state)
        : m_tree(tree),
          m_images(images),
          m_state(state),
          m_root(std::make_unique<CDiagMenu>(TMENU, "board", Model(tree.Root()))),
          m_sim(std::make_unique<CSimDevice>()) {}

    std::unique_ptr<CDiagMenu> Mount() {
        MountPlatform(m_tree.Root(), *m_root);
        // Modules name their bus, so all buses must be there.
        for (const auto& [node, match] : m_modules) {
            Guarded([this, node = node, &match = match] { MountModule(*node, match); });
        }
        AddNode(*m_root, std::move(m_sim));
        return std::move(m_root);
    }

  private:
    static std::string Model(const CDeviceTreeNode& root) {
        std::string model = "board";
        Guarded([&] { model = ReadString(root, "model").value_or(model); });
        return PrintableText(model);
    }

    bool IsTaken(const CDiagMenu& menu, const std::string& name) const {
        return menu.FindChild(name) != nullptr ||
               (&menu == m_root.get() && name == m_sim->GetName());
    }

    bool IsBus(const std::string& name) const {
        const std::vector<CSimBus*>& buses = m_sim->GetBuses();
        return std::any_of(buses.begin(), buses.end(),
                           [&name](const CSimBus* bus) { return name == bus->GetName(); });
    }

    // The name of a new child of `menu` for that node.
    std::string NameFor(const CDeviceTreeNode& node, const CDiagMenu& menu) const {
        return UniqueName(TypeableName(WantedName(node)),
                          [&](const std::string& candidate) { return IsTaken(menu, candidate); });
    }

    // The nodes that are not on an I2C or MDIO bus.
    void MountPlatform(const CDeviceTreeNode& parent, CDiagMenu& menu) {
        for (const auto& child : parent.Children()) {
            Guarded([&] { MountPlatformNode(*child, menu); });
        }
    }

    void MountPlatformNode(const CDeviceTreeNode& node, CDiagMenu& menu) {
        const CMatch match = MatchCompatible(node);
        if (match.compatible.empty()) {
            MountPlatform(node, menu);  // no device, but it may hold some
            return;
        }
        if (IsDisabled(node)) {
            AddPlain(node, match, std::nullopt, menu, "disabled");
            return;
        }
        if (match.binding == nullptr) {
            MountPlatform(node, AddUnknown(node, match, std::nullopt, menu));
            return;
        }
        switch (match.binding->kind) {
            case EBindingKind::CONTAINER:
                MountPlatform(node, menu);
                break;
            case EBindingKind::I2C_BUS:
                MountI2cBus(node, match, menu);
                break;
            case EBindingKind::MDIO_BUS:
                MountMdioBus(node, match, menu);
                break;
            case EBindingKind::I2C_MODULE:
                m_modules.emplace_back(&node, match);
                break;
            case EBindingKind::I2C_DEVICE:
            case EBindingKind::MDIO_PHY:
                throw CDiagException("%s: \"%s\" does not stand on a bus that it could answer on",
                                     node.Path().c_str(), PrintableText(match.compatible).c_str());
        }
    }

    void MountI2cBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu) {
        const uint32_t hz = ClockHz(node);
        // The state folder and the fault commands know buses by their names alone.
        const std::string name = UniqueName(NameFor(node, menu), [&](const std::string& candidate) {
            return IsTaken(menu, candidate) || IsBus(candidate);
        });
        CSimBus& bus = AddNode(
            menu, std::make_unique<CSimBus>(
                      name, match.compatible + ", simulated, " + toString(hz, 0) + " Hz", hz));
        m_sim->AddBus(bus);
        MountWire(node, m_wires.emplace_back(bus, bus.Segment(), bus.Clock(), name));
    }

    void MountWire(const CDeviceTreeNode& node, CI2cWire& wire) {
        m_wire_of[&node] = &wire;
        for (const auto& child : node.Children()) {
            Guarded([&] { MountI2cNode(*child, wire); });
        }
    }

    void MountI2cNode(const CDeviceTreeNode& node, CI2cWire& wire) {
        const CMatch match = MatchCompatible(node);
        const auto addr =
            static_cast<uint8_t>(RequireReg(node, 1, LAST_I2C_ADDR, "a 7-bit address"));
        if (IsDisabled(node)) {
            // Its address is free: alternatives of one place are described this way.
            AddPlain(node, match, addr, wire.Menu(), "disabled");
            return;
        }
        if (match.binding != nullptr && match.binding->kind != EBindingKind::I2C_DEVICE) {
            throw CDiagException("%s: \"%s\" is not a device on an I2C bus", node.Path().c_str(),
                                 PrintableText(match.compatible).c_str());
        }
        MountI2cDevice(node, match, addr, wire);
    }

    void MountI2cDevice(const CDeviceTreeNode& node, const CMatch& match, uint8_t addr,
                        CI2cWire& wire) {
        wire.Claim(addr, node.Path());
        if (match.binding == nullptr) {
            ShowPlain(node, AddUnknown(node, match, addr, wire.Menu()));
            return;
        }
        const CDeviceRequest request{node, NameFor(node, wire.Menu()), match.compatible, addr,
                                     match.binding->create_chip != nullptr};
        CSimParts parts;
        if (match.binding->create_chip != nullptr) {
            const std::filesystem::path file = wire.Folder() / (AddrText(addr) + ".bin");
            parts = match.binding->create_chip(
                {node, match.compatible, addr, wire, m_state / file, m_images / file});
        }
        CDiagMenu& device = AddNode(wire.Menu(), match.binding->create_node(request));
        if (parts.memory != nullptr) {
            m_sim->AddContents(ContentsName(device), *parts.memory);
        }
        if (parts.mux != nullptr) {
            MountChannels(node, device, *parts.mux, wire, wire.Folder() / AddrText(addr));
        }
    }

    void MountChannels(const CDeviceTreeNode& node, CDiagMenu& device, CSimMux& mux,
                       const CI2cWire& above, const std::filesystem::path& folder) {
        std::vector<CI2cWire*> channels;
        for (unsigned int ch = 0; ch < mux.Channels(); ++ch) {
            const std::string number = std::to_string(ch);
            CDiagMenu& menu = AddNode(
                device, std::make_unique<CDiagMenu>(TMENU, "ch" + number, "channel " + number));
            channels.push_back(&m_wires.emplace_back(menu, mux.Channel(ch), above.Clock(),
                                                     folder / ("ch" + number)));
        }
        std::map<uint32_t, std::string> described;
        for (const auto& child : node.Children()) {
            Guarded([&] {
                const uint32_t ch = RequireReg(*child, 0, mux.Channels() - 1, "a channel");
                const auto [first, fresh] = described.emplace(ch, child->Path());
                if (!fresh) {
                    throw CDiagException("%s: channel %u is already described by %s",
                                         child->Path().c_str(), ch, first->second.c_str());
                }
                MountWire(*child, *channels[ch]);
            });
        }
    }

    void MountModule(const CDeviceTreeNode& node, const CMatch& match) {
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
        MountI2cDevice(node, match, MODULE_ADDR, *wire->second);
    }

    void MountMdioBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu) {
        CDiagMenu& bus =
            AddNode(menu, match.binding->create_node(
                              {node, NameFor(node, menu), match.compatible, std::nullopt, false}));
        std::map<uint32_t, std::string> claims;
        for (const auto& child : node.Children()) {
            Guarded([&] { MountMdioDevice(*child, bus, claims); });
        }
    }

    void MountMdioDevice(const CDeviceTreeNode& node, CDiagMenu& bus,
                         std::map<uint32_t, std::string>& claims) {
        const CMatch match = MatchCompatible(node);
        const uint32_t addr = RequireReg(node, 0, LAST_MDIO_ADDR, "an MDIO address");
        const auto [claim, fresh] = claims.emplace(addr, node.Path());
        if (!fresh) {
            throw CDiagException("%s: address 0x%02x is already taken by %s", node.Path().c_str(),
                                 addr, claim->second.c_str());
        }
        if (match.binding != nullptr && match.binding->kind == EBindingKind::MDIO_PHY) {
            AddNode(bus, match.binding->create_node(
                             {node, NameFor(node, bus), match.compatible, addr, false}));
        } else {
            AddUnknown(node, match, addr, bus);
        }
    }

    CDiagMenu& AddPlain(const CDeviceTreeNode& node, const CMatch& match,
                        std::optional<uint32_t> addr, CDiagMenu& menu, const char* note) {
        return AddNode(menu, CreatePlainNode(
                                 {node, NameFor(node, menu), match.compatible, addr, false}, note));
    }

    CDiagMenu& AddUnknown(const CDeviceTreeNode& node, const CMatch& match,
                          std::optional<uint32_t> addr, CDiagMenu& menu) {
        CDiagMenu& plain = AddPlain(node, match, addr, menu, "not known");
        diag_pf_send_log(LW_INFO, "%s: \"%s\" is not known, mounted as a plain node\n",
                         node.Path().c_str(), PrintableText(match.compatible).c_str());
        return plain;
    }

    // What a device that is not known holds can be shown, but nothing can be said of it.
    void ShowPlain(const CDeviceTreeNode& parent, CDiagMenu& menu) {
        for (const auto& child : parent.Children()) {
            Guarded([&] {
                CDiagMenu& plain = AddPlain(*child, MatchCompatible(*child), std::nullopt, menu,
                                            "below a device that is not known");
                ShowPlain(*child, plain);
            });
        }
    }

    // The place in the tree, in one word: "i2c-0.pca9547-0.ch0.spd-0".
    std::string ContentsName(const CDiagObj& device) const {
        std::string name = device.GetName();
        for (const CDiagObj* at = device.GetParent(); at != m_root.get(); at = at->GetParent()) {
            name.insert(0, std::string(at->GetName()) + ".");
        }
        return UniqueName(name, [this](const std::string& candidate) {
            return m_sim->FindChild(candidate) != nullptr;
        });
    }

    const CDeviceTree& m_tree;
    const std::filesystem::path m_images;
    const std::filesystem::path m_state;
    std::unique_ptr<CDiagMenu> m_root;
    std::unique_ptr<CSimDevice> m_sim;
    std::deque<CI2cWire> m_wires;
    std::map<const CDeviceTreeNode*, CI2cWire*> m_wire_of;  // of buses and channels
    std::vector<std::pair<const CDeviceTreeNode*, CMatch>> m_modules;
};

}  // namespace

std::unique_ptr<CDiagMenu> MountBoard(const CDeviceTree& tree, const std::filesystem::path& images,
                                      const std::filesystem::path& state) {
    return CBoardMount(tree, images, state).Mount();
}
