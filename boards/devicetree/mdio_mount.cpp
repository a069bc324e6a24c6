#include "boards/devicetree/mdio_mount.h"

#include <map>
#include <optional>

#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/plain_node.h"

namespace {

constexpr uint32_t LAST_ADDR = 31;

using CClaims = std::map<uint32_t, const CDeviceTreeNode*>;

void MountDevice(const CDeviceTreeNode& node, CDiagMenu& bus, CTreeNames& names, CClaims& claims) {
    const CMatch match = MatchCompatible(node);
    const uint32_t addr = RequireReg(node, 0, LAST_ADDR, "an MDIO address");
    const auto [claim, fresh] = claims.emplace(addr, &node);
    if (!fresh) {
        throw CDiagException("%s: address 0x%02x is already taken by %s", node.Path().c_str(), addr,
                             claim->second->Path().c_str());
    }
    const CDeviceRequest request(node, match.compatible, addr, names.Below(bus));
    const bool phy = match.binding != nullptr && match.binding->kind == EBindingKind::MDIO_PHY;
    AddNode(bus, phy ? match.binding->create_node(request) : CreateUnknownNode(request));
}

}  // namespace

void MountMdioBus(const CDeviceTreeNode& node, const CMatch& match, CDiagMenu& menu,
                  CTreeNames& names) {
    const CDeviceRequest request(node, match.compatible, std::nullopt, names.Below(menu));
    CDiagMenu& bus = AddNode(menu, match.binding->create_node(request));
    CClaims claims;
    for (const auto& child : node.Children()) {
        MountStep([&] { MountDevice(*child, bus, names, claims); });
    }
}
