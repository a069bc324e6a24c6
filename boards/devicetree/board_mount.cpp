#include "boards/devicetree/board_mount.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/i2c_mount.h"
#include "boards/devicetree/io_mount.h"
#include "boards/devicetree/mdio_mount.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "boards/devicetree/sibling_names.h"
#include "boards/sim/sim_device.h"

namespace {

std::string Model(const CDeviceTreeNode& root) {
    std::string model = "board";
    MountStep([&] { model = ReadString(root, "model").value_or(model); });
    return PrintableText(model);
}

class CBoardMount {
  public:
    CBoardMount(const CDeviceTree& tree, const std::filesystem::path& folder,
                const std::filesystem::path& state)
        : m_tree(tree),
          m_root(std::make_unique<CDiagMenu>(TMENU, "board", Model(tree.Root()))),
          m_sim(std::make_unique<CSimDevice>()),
          m_i2c(tree, m_names, *m_sim, folder, state),
          m_io(m_names, *m_sim, state),
          m_mdio(*m_root, m_names) {
        m_names.Below(*m_root).Take(m_sim->GetName());
    }

    std::unique_ptr<CDiagMenu> Mount() {
        MountBelow(m_tree.Root(), *m_root);
        // Modules name their bus, so all buses must be there.
        for (const auto& [node, match] : m_modules) {
            MountStep([this, node = node, &match = match] { m_i2c.MountModule(*node, match); });
        }
        m_i2c.WarnOfSharedAddresses();
        AddNode(*m_root, std::move(m_sim));
        return std::move(m_root);
    }

  private:
    // The nodes that are not on an I2C or MDIO bus.
    void MountBelow(const CDeviceTreeNode& parent, CDiagMenu& menu) {
        for (const auto& child : parent.Children()) {
            MountStep([&] { MountNode(*child, menu); });
        }
    }

    void MountNode(const CDeviceTreeNode& node, CDiagMenu& menu) {
        const CMatch match = MatchCompatible(node);
        if (match.compatible.empty()) {
            MountBelow(node, menu);  // no device, but it may hold some
            return;
        }
        // A disabled MDIO bus keeps its port.
        const bool has_port =
            match.binding != nullptr && match.binding->kind == EBindingKind::MDIO_BUS;
        if (IsDisabled(node) && !has_port) {
            AddNode(menu, CreatePlainNode(Request(node, match, menu), "disabled"));
            return;
        }
        if (match.binding == nullptr) {
            MountBelow(node, AddNode(menu, CreateUnknownNode(Request(node, match, menu))));
            return;
        }
        switch (match.binding->kind) {
            case EBindingKind::CONTAINER:
                MountBelow(node, menu);
                break;
            case EBindingKind::I2C_BUS:
                m_i2c.MountBus(node, match, menu);
                break;
            case EBindingKind::IO_PORTS:
                m_io.MountPorts(node, match, menu);
                break;
            case EBindingKind::MDIO_BUS:
                m_mdio.MountBus(node, match);
                break;
            case EBindingKind::I2C_MODULE:
                m_modules.emplace_back(&node, match);
                break;
            case EBindingKind::I2C_DEVICE:
            case EBindingKind::MDIO_PHY:
            case EBindingKind::MDIO_C45_PHY:
                throw CDiagException("%s: \"%s\" does not stand on a bus that it could answer on",
                                     node.Path().c_str(), PrintableText(match.compatible).c_str());
        }
    }

    CDeviceRequest Request(const CDeviceTreeNode& node, const CMatch& match,
                           const CDiagMenu& menu) {
        return {node, match.compatible, std::nullopt, m_names.Below(menu)};
    }

    const CDeviceTree& m_tree;
    CTreeNames m_names;
    std::unique_ptr<CDiagMenu> m_root;
    std::unique_ptr<CSimDevice> m_sim;
    CI2cMount m_i2c;
    CIoMount m_io;
    CMdioMount m_mdio;
    std::vector<std::pair<const CDeviceTreeNode*, CMatch>> m_modules;
};

}  // namespace

std::unique_ptr<CDiagMenu> MountBoard(const CDeviceTree& tree, const std::filesystem::path& folder,
                                      const std::filesystem::path& state) {
    return CBoardMount(tree, folder, state).Mount();
}
