#include "boards/devicetree/board_mount.h"

#include <string>
#include <utility>
#include <vector>

#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/i2c_mount.h"
#include "boards/devicetree/io_mount.h"
#include "boards/devicetree/left_out.h"
#include "boards/devicetree/left_out_cmd.h"
#include "boards/devicetree/mdio_mount.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/printable_text.h"
#include "boards/devicetree/property_reader.h"
#include "boards/devicetree/sibling_names.h"

namespace {

class CBoardMount {
  public:
    CBoardMount(const CDeviceTree& tree, const std::filesystem::path& tables,
                IBoardHardware& hardware)
        : m_tree(tree),
          m_hardware(hardware),
          m_root(std::make_unique<CDiagMenu>(TMENU, "board", Model())),
          m_i2c(tree, m_names, hardware, m_left_out, tables),
          m_io(m_names, hardware),
          m_mdio(*m_root, m_names, m_left_out) {
        m_names.Below(*m_root).Take(CLeftOutCmd::NAME);
        m_hardware.Begin(*m_root, m_names);
    }

    std::unique_ptr<CDiagMenu> Mount() {
        MountBelow(m_tree.Root(), *m_root);
        // Modules name their bus, so all buses must be there.
        for (const auto& [node, match] : m_modules) {
            m_left_out.Step(
                [this, node = node, &match = match] { m_i2c.MountModule(*node, match); });
        }
        m_i2c.WarnOfSharedAddresses();
        m_hardware.End(*m_root);
        TellLeftOut();
        AddNode(*m_root, std::make_unique<CLeftOutCmd>(m_left_out.Texts()));
        return std::move(m_root);
    }

  private:
    std::string Model() {
        std::string model = "board";
        m_left_out.Step([&] { model = ReadString(m_tree.Root(), "model").value_or(model); });
        return PrintableText(model);
    }

    // The nodes that are not on an I2C or MDIO bus.
    void MountBelow(const CDeviceTreeNode& parent, CDiagMenu& menu) {
        for (const auto& child : parent.Children()) {
            m_left_out.Step([&] { MountNode(*child, menu); });
        }
    }

    void MountNode(const CDeviceTreeNode& node, CDiagMenu& menu) {
        const CMatch match = MatchCompatible(node);
        if (match.compatible.empty() && !m_hardware.HasBus(node)) {
            MountBelow(node, menu);  // no device, but it may hold some
            return;
        }
        // A disabled MDIO bus keeps its port.
        const bool has_port =
            match.binding != nullptr && match.binding->kind == EBindingKind::MDIO_BUS;
        if (IsDisabled(node) && !has_port) {
            m_left_out.Add(node, match.compatible, "disabled");
            return;
        }
        if (m_hardware.HasBus(node)) {
            m_i2c.MountBus(node, match, menu);
            return;
        }
        // Most of what a processor holds is of no use here, but what hangs below it may be.
        if (match.binding == nullptr) {
            m_left_out.Add(node, match.compatible, "not known");
            MountBelow(node, menu);
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
            case EBindingKind::I2C_MUX:
                throw CDiagException("%s: \"%s\" does not stand on a bus that it could answer on",
                                     node.Path().c_str(), PrintableText(match.compatible).c_str());
            case EBindingKind::MDIO_PHY:
            case EBindingKind::MDIO_C45_PHY:
                // Of another controller than this processor's, which is left out as well.
                m_left_out.Add(node, match.compatible, "not on an MDIO bus that is known");
                break;
        }
    }

    void TellLeftOut() const {
        if (const size_t count = m_left_out.Texts().size()) {
            diag_pf_send_log(LW_INFO, "%zu node%s of the description %s not in the tree: see /%s\n",
                             count, count == 1 ? "" : "s", count == 1 ? "is" : "are",
                             CLeftOutCmd::NAME);
        }
    }

    const CDeviceTree& m_tree;
    IBoardHardware& m_hardware;
    CTreeNames m_names;
    CLeftOut m_left_out;
    std::unique_ptr<CDiagMenu> m_root;
    CI2cMount m_i2c;
    CIoMount m_io;
    CMdioMount m_mdio;
    std::vector<std::pair<const CDeviceTreeNode*, CMatch>> m_modules;
};

}  // namespace

std::unique_ptr<CDiagMenu> MountBoard(const CDeviceTree& tree, const std::filesystem::path& tables,
                                      IBoardHardware& hardware) {
    return CBoardMount(tree, tables, hardware).Mount();
}
