#include "boards/i2c_sim/board_adapters.h"

#include <utility>

#include "boards/chips/mux_part.h"
#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/known_part_name.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/part_name.h"
#include "boards/devicetree/property_reader.h"
#include "boards/devicetree/sim_hardware.h"
#include "boards/i2c_sim/bus_adapter.h"
#include "boards/i2c_sim/channel_adapter.h"
#include "framework/diag_exception.h"

namespace {

// Remembers which node each bus is of.
class CNotedHardware : public CSimHardware {
  public:
    using CSimHardware::CSimHardware;

    std::unique_ptr<CRootBus> CreateBus(const CDeviceRequest& request,
                                        const std::string& name) override {
        std::unique_ptr<CRootBus> bus = CSimHardware::CreateBus(request, name);
        m_nodes.push_back(&request.node);
        return bus;
    }

    // In the order of Buses().
    const std::vector<const CDeviceTreeNode*>& Nodes() const { return m_nodes; }

  private:
    std::vector<const CDeviceTreeNode*> m_nodes;
};

// The node of the multiplexer's channel, or null.
const CDeviceTreeNode* ChannelNode(const CDeviceTreeNode& mux, uint32_t channel) {
    for (const auto& child : ChannelsOf(mux).Children()) {
        if (ReadU32(*child, "reg") == channel) {
            return child.get();
        }
    }
    return nullptr;
}

}  // namespace

CBoardAdapters::CBoardAdapters(const CDeviceTree& tree, const std::filesystem::path& blob,
                               const std::filesystem::path& state, const adapter_traits_t& traits,
                               bool kernel_mux)
    : m_aliases(tree.Root(), "i2c"), m_next(m_aliases.FirstFree()) {
    const std::filesystem::path folder = blob.parent_path();
    CNotedHardware hardware(folder / "images", state);
    m_board = MountBoard(tree, folder / "xml", hardware);
    for (size_t i = 0; i < hardware.Nodes().size(); ++i) {
        const CDeviceTreeNode& node = *hardware.Nodes()[i];
        CAdapter& adapter = Add(
            std::make_unique<CBusAdapter>(NumberOf(&node), traits, *hardware.Buses()[i]), &node);
        if (kernel_mux) {
            AddMuxes(node, adapter);
        }
    }
}

CBoardAdapters::~CBoardAdapters() = default;

CAdapter& CBoardAdapters::Add(std::unique_ptr<CAdapter> adapter, const CDeviceTreeNode* node) {
    m_entries.push_back({std::move(adapter), node != nullptr ? node->Path() : ""});
    return *m_entries.back().adapter;
}

void CBoardAdapters::AddMuxes(const CDeviceTreeNode& bus, CAdapter& adapter) {
    for (const auto& child : bus.Children()) {
        try {
            AddMux(*child, adapter);
        } catch (const CDiagException&) {
            // A description of such a kind was reported when the board was mounted.
        }
    }
}

void CBoardAdapters::AddMux(const CDeviceTreeNode& node, CAdapter& adapter) {
    const CMatch match = MatchCompatible(node);
    const bool is_mux = match.binding != nullptr && match.binding->kind == EBindingKind::I2C_MUX;
    if (!is_mux || IsDisabled(node)) {
        return;
    }
    const std::string chip(PartName(match.compatible));
    const mux_part_t& part = *FindMuxPart(KnownPartName(match.compatible));
    const auto addr = static_cast<uint8_t>(RequireU32(node, "reg"));
    mux_control_t control = {.addr = addr, .select = 0, .closed = part.ControlFor(0)};
    // What the kernel's driver begins with.
    CChannelAdapter::Set(adapter, addr, *control.closed);
    if (!ReadBool(node, "i2c-mux-idle-disconnect")) {
        control.closed.reset();
    }
    driven_mux_t mux = {&adapter, addr, chip, {}};
    for (unsigned int channel = 0; channel < part.channels; ++channel) {
        control.select = *part.ControlFor(1U << channel);
        const CDeviceTreeNode* below = ChannelNode(node, channel);
        CAdapter& added = Add(
            std::make_unique<CChannelAdapter>(NumberOf(below), channel, adapter, control), below);
        mux.channels.push_back(added.Number());
        if (below != nullptr) {
            AddMuxes(*below, added);
        }
    }
    m_muxes.push_back(std::move(mux));
}

// As the kernel counts: an alias decides, and the others come behind all aliases.
unsigned int CBoardAdapters::NumberOf(const CDeviceTreeNode* node) {
    const std::optional<uint32_t> number =
        node != nullptr ? m_aliases.NumberOf(*node) : std::nullopt;
    return number ? *number : m_next++;
}
