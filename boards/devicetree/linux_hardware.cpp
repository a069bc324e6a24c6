#include "boards/devicetree/linux_hardware.h"

#include <optional>
#include <utility>

#include "boards/devicetree/bus_address.h"
#include "boards/devicetree/printable_text.h"
#include "boards/linux/i2c_adapter.h"
#include "boards/linux/linux_bus.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

namespace {

// The kernel's number of the adapter that a wire hangs on; nothing behind a multiplexer
// that is driven from here, of which the kernel knows nothing.
std::optional<unsigned int> AdapterOf(const CI2cWire& wire) {
    if (wire.Channel() >= 0) {
        return std::nullopt;
    }
    return CI2cSysfs::NumberOf(dynamic_cast<CLinuxBus&>(wire.Root()).Path());
}

// Which node each adapter was told to be the bus of. Each wire is one bus of the tree, as
// its locks and the channels that are open are kept there.
std::map<unsigned int, std::string> NodesByAdapter(const CLinuxHardware::CBuses& buses) {
    std::map<unsigned int, std::string> nodes;
    for (const auto& [node, device] : buses) {
        const auto number = CI2cSysfs::NumberOf(device);
        if (!number) {
            continue;
        }
        const auto [other, is_new] = nodes.emplace(*number, node);
        if (!is_new) {
            throw CDiagException("--bus %s=%s: that adapter is the bus of %s already", node.c_str(),
                                 device.c_str(), other->second.c_str());
        }
    }
    return nodes;
}

}  // namespace

CLinuxHardware::CLinuxHardware(const CDeviceTree& tree, CI2cSysfs sysfs, const CBuses& buses,
                               II2cDev& dev)
    : m_sysfs(std::move(sysfs)), m_dev(dev) {
    for (const auto& [node, device] : buses) {
        const CDeviceTreeNode* found = tree.NodeAt(node);
        if (found == nullptr) {
            throw CDiagException("--bus %s=%s: the description has no node %s", node.c_str(),
                                 device.c_str(), node.c_str());
        }
        CheckAdapter(node, device);
        if (!m_devices.emplace(found->Path(), device).second) {
            throw CDiagException("--bus %s=%s: the bus of that node is %s already", node.c_str(),
                                 device.c_str(), m_devices.at(found->Path()).c_str());
        }
    }
    m_unused = m_devices;
    m_told = NodesByAdapter(m_devices);
    for (const i2c_adapter_t& adapter : m_sysfs.Adapters()) {
        if (adapter.of_node.empty() || m_unused.contains(adapter.of_node)) {
            continue;  // what was told comes first
        }
        const auto other = m_told.find(adapter.number);
        if (other == m_told.end()) {
            m_devices.emplace(adapter.of_node, adapter.dev_path);
        } else {
            m_given_away.emplace(adapter.of_node, other->second);
        }
    }
}

// Who tells a bus by hand wants that one or none.
void CLinuxHardware::CheckAdapter(const std::string& node, const std::string& device) const {
    try {
        const CI2cAdapter adapter(device, m_sysfs, m_dev);
    } catch (const CDiagException& fault) {
        throw CDiagException("--bus %s=%s: %s", node.c_str(), device.c_str(), fault.what());
    }
}

void CLinuxHardware::End(CDiagMenu&) {
    for (const auto& [node, device] : m_unused) {
        diag_pf_send_log(
            LW_WARN,
            "--bus %s=%s: not used, the node is left out (/left-out tells why), or is no bus, as "
            "a channel of a multiplexer\n",
            node.c_str(), device.c_str());
    }
}

bool CLinuxHardware::HasBus(const CDeviceTreeNode& node) const {
    return m_devices.contains(node.Path()) || m_given_away.contains(node.Path());
}

std::unique_ptr<CRootBus> CLinuxHardware::CreateBus(const CDeviceRequest& request,
                                                    const std::string& name) {
    const std::string path = request.node.Path();
    m_unused.erase(path);
    if (const auto other = m_given_away.find(path); other != m_given_away.end()) {
        throw CDiagException("%s: its adapter was told to be the bus of %s, with --bus",
                             path.c_str(), other->second.c_str());
    }
    const auto found = m_devices.find(path);
    if (found == m_devices.end()) {
        throw CDiagException(
            "%s: the kernel has no I2C adapter for this node; which one it is can be told with "
            "--bus %s=/dev/i2c-N",
            path.c_str(), path.c_str());
    }
    try {
        return Open(name, request.compatible.empty() ? "bus" : request.Text(), found->second);
    } catch (const CDiagException& fault) {
        throw CDiagException("%s: %s", path.c_str(), fault.what());
    }
}

// Described as "fsl-i2c, /dev/i2c-0, MPC adapter".
std::unique_ptr<CRootBus> CLinuxHardware::Open(const std::string& name, const std::string& what,
                                               const std::string& device) const {
    std::string description = what + ", " + device;
    if (const auto number = CI2cSysfs::NumberOf(device)) {
        if (const auto adapter = m_sysfs.Adapter(*number)) {
            description += ", " + PrintableText(adapter->name);
        }
    }
    return std::make_unique<CLinuxBus>(name, description, device, m_sysfs, m_dev);
}

bool CLinuxHardware::IsMuxDriven(const CI2cWire& wire, uint8_t addr) const {
    const std::optional<unsigned int> adapter = AdapterOf(wire);
    return adapter && !m_sysfs.DriverOf(*adapter, addr).empty();
}

std::unique_ptr<CRootBus> CLinuxHardware::CreateChannelBus(const CI2cWire& wire, uint8_t addr,
                                                           unsigned int channel,
                                                           const std::string& name) {
    const std::optional<unsigned int> adapter = AdapterOf(wire);
    const auto number = adapter ? m_sysfs.ChannelOf(*adapter, addr, channel) : std::nullopt;
    if (!number || m_told.contains(*number)) {
        return nullptr;
    }
    return Open(name, "channel " + std::to_string(channel), "/dev/i2c-" + std::to_string(*number));
}

std::string CLinuxHardware::NoteOf(const CI2cWire& wire, uint8_t addr) const {
    const std::optional<unsigned int> adapter = AdapterOf(wire);
    const std::string driver = adapter ? m_sysfs.DriverOf(*adapter, addr) : std::string();
    return driver.empty() ? driver : "the kernel's: driver " + driver;
}

ports_file_t CLinuxHardware::PortsFile(const CDeviceTreeNode& node, uint64_t address, uint32_t) {
    return {"/dev/mem", ProcessorAddress(node, address)};
}
