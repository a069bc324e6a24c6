#include "boards/devicetree/mdio_mount.h"

#include <optional>
#include <string>

#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/plain_node.h"
#include "boards/devicetree/property_reader.h"
#include "t2080_mdio/diag_mdio_bus.h"

namespace {

constexpr const char* DEVICE = "mdio";
constexpr uint32_t LAST_PORT = 15;
constexpr uint32_t LAST_ADDR = 31;

// What is to be typed to reach a PHY, or why it cannot be reached.
std::string NoteOf(const CMatch& match, uint32_t port, uint32_t addr) {
    std::string note = "port " + std::to_string(port) + ", device " + std::to_string(addr);
    if (match.binding != nullptr && match.binding->kind == EBindingKind::MDIO_C45_PHY) {
        note += ", clause 45: not yet supported";
    }
    return note;
}

}  // namespace

CMdioMount::CMdioMount(CDiagMenu& root, CTreeNames& names, CLeftOut& left_out)
    : m_root(root), m_names(names), m_left_out(left_out) {
    m_names.Below(m_root).Take(DEVICE);
}

void CMdioMount::MountBus(const CDeviceTreeNode& node, const CMatch& match) {
    const uint32_t port = TakePort(node);
    if (IsDisabled(node)) {
        m_left_out.Add(node, match.compatible, "disabled");
        return;
    }
    CDiagMenu& device = Device();
    const CDeviceRequest request(node, match.compatible, std::nullopt, m_names.Below(device));
    const std::string note = "port " + std::to_string(port);
    CDiagMenu& bus = AddNode(device, CreatePlainNode(request, note.c_str()));
    CClaims claims;
    for (const auto& child : node.Children()) {
        m_left_out.Step([&] { MountPhy(*child, port, bus, claims); });
    }
}

void CMdioMount::MountPhy(const CDeviceTreeNode& node, uint32_t port, CDiagMenu& bus,
                          CClaims& claims) {
    const CMatch match = MatchCompatible(node);
    const uint32_t addr = RequireReg(node, 0, LAST_ADDR, "an MDIO address");
    Claim(claims, addr, node, "address " + toString(addr, VF_HEX));
    if (IsDisabled(node)) {
        m_left_out.Add(node, match.compatible, "disabled");
        return;
    }
    const CDeviceRequest request(node, match.compatible, addr, m_names.Below(bus));
    const bool is_phy =
        match.binding != nullptr && (match.binding->kind == EBindingKind::MDIO_PHY ||
                                     match.binding->kind == EBindingKind::MDIO_C45_PHY);
    if (!is_phy) {
        TellUnknown(request, "a plain node");
    }
    AddNode(bus, CreatePlainNode(request, NoteOf(match, port, addr).c_str()));
}

CDiagMenu& CMdioMount::Device() {
    if (m_device == nullptr) {
        m_device = &AddNode(
            m_root, std::make_unique<CDiagMdioBus>(DEVICE, "the processor's MDIO bus, all ports"));
    }
    return *m_device;
}

uint32_t CMdioMount::TakePort(const CDeviceTreeNode& node) {
    const uint32_t place = m_buses++;
    const uint32_t port = ReadU32(node, "cell-index").value_or(place);
    if (port > LAST_PORT) {
        throw CDiagException(
            "%s: MDIO port %u, should be 0 to %u; \"cell-index\" tells which it is",
            node.Path().c_str(), port, LAST_PORT);
    }
    Claim(m_ports, port, node, "MDIO port " + std::to_string(port));
    return port;
}

void CMdioMount::Claim(CClaims& claims, uint32_t number, const CDeviceTreeNode& node,
                       const std::string& what) {
    const auto [claim, fresh] = claims.emplace(number, &node);
    if (!fresh) {
        throw CDiagException("%s: %s is already taken by %s", node.Path().c_str(), what.c_str(),
                             claim->second->Path().c_str());
    }
}
