#include "boards/devicetree/sim_hardware.h"

#include <algorithm>
#include <string_view>

#include "boards/chips/board_node_path.h"
#include "boards/chips/board_sfp_eeprom.h"
#include "boards/devicetree/compatible_table.h"
#include "boards/devicetree/mount_step.h"
#include "boards/devicetree/property_reader.h"
#include "framework/diag_functions.h"

namespace {

constexpr uint32_t STANDARD_CLOCK_HZ = 100'000;
constexpr uint32_t MAX_CLOCK_HZ = 5'000'000;

uint32_t ClockHz(const CDeviceTreeNode& node) {
    const uint32_t hz = ReadU32(node, "clock-frequency").value_or(STANDARD_CLOCK_HZ);
    if (hz == 0 || hz > MAX_CLOCK_HZ) {
        throw CDiagException("%s: property \"clock-frequency\" is %u, should be 1 to %u",
                             node.Path().c_str(), hz, MAX_CLOCK_HZ);
    }
    return hz;
}

}  // namespace

CSimHardware::CSimHardware(std::filesystem::path images, std::filesystem::path state)
    : m_images(std::move(images)),
      m_state(std::move(state)),
      m_unmounted(std::make_unique<CSimDevice>()),
      m_sim(m_unmounted.get()) {}

void CSimHardware::Begin(CDiagMenu& root, CTreeNames& names) {
    m_names = &names;
    names.Below(root).Take(m_sim->GetName());
}

void CSimHardware::End(CDiagMenu& root) {
    AddNode(root, std::move(m_unmounted));
}

// Controllers of any kind carry a generic name. So do the channels of multiplexers, but
// those are compatible with nothing.
bool CSimHardware::HasBus(const CDeviceTreeNode& node) const {
    const std::string_view generic = node.Name().substr(0, node.Name().find('@'));
    return (generic == "i2c" || generic == "i2c-bus") && node.Find("compatible") != nullptr;
}

std::unique_ptr<CRootBus> CSimHardware::CreateBus(const CDeviceRequest& request,
                                                  const std::string& name) {
    const uint32_t hz = ClockHz(request.node);
    auto bus = std::make_unique<CSimBus>(
        name, request.Text() + ", simulated, " + toString(hz, 0) + " Hz", hz);
    m_sim->AddBus(*bus);
    m_segments[{bus.get(), -1}] = &bus->Segment();
    return bus;
}

IBoardHardware::CShow CSimHardware::PlaceChip(const CDeviceRequest& request,
                                              const CBinding& binding, uint8_t addr,
                                              const CI2cWire& wire) {
    if (binding.create_chip == nullptr) {
        return [](CDiagMenu&) {};
    }
    if (request.eeprom != nullptr) {
        LockState();
    }
    const std::filesystem::path file = wire.Folder() / ContentsFile(addr);
    const CSimParts chip =
        binding.create_chip({.node = request.node,
                             .compatible = request.compatible,
                             .addr = addr,
                             .segment = *m_segments.at({&wire.Bus(), wire.Channel()}),
                             .clock = dynamic_cast<CSimBus&>(wire.Root()).Clock(),
                             .eeprom = request.eeprom,
                             .contents = m_state / file,
                             .image = m_images / file});
    return [this, chip](CDiagMenu& device) { Show(chip, device); };
}

void CSimHardware::Show(const CSimParts& chip, CDiagMenu& device) {
    if (chip.memory != nullptr) {
        m_sim->AddContents(TakeName(device), *chip.memory);
    }
    if (chip.diagnostics != nullptr) {
        m_sim->AddContents(TakeName(*device.FindChild(CBoardSfpEeprom::DIAGNOSTICS)),
                           *chip.diagnostics);
    }
    if (chip.registers != nullptr) {
        m_sim->AddOutside(TakeName(device), *chip.registers);
    }
    if (chip.mux != nullptr) {
        auto& mux = dynamic_cast<CDiagI2cSwitch&>(device);
        for (int ch = 0; ch < mux.getNumberofChannels(); ++ch) {
            m_segments[{&mux, static_cast<int8_t>(ch)}] =
                &chip.mux->Channel(static_cast<unsigned int>(ch));
        }
    }
}

ports_file_t CSimHardware::PortsFile(const CDeviceTreeNode&, uint64_t address, uint32_t ports) {
    const std::string name = toString(address, VF_HEX) + ".bin";
    LockState();
    try {
        return {CSimMemory(m_state / "io-ports" / name, ports).Path(), 0};
    } catch (const CDiagException& fault) {
        throw CContentsFault(fault.what());
    }
}

void CSimHardware::LockState() const {
    try {
        m_sim->LockState(m_state);
    } catch (const CDiagException& fault) {
        throw CContentsFault(fault.what());
    }
}

// Below the simulation the place in the tree is one word:
// "i2c-0.pca9547-0.ch0.spd-0".
std::string CSimHardware::TakeName(const CDiagObj& device) {
    std::string name = NodePath(device).substr(1);
    std::replace(name.begin(), name.end(), '/', '.');
    return m_names->Below(*m_sim).TakeUnique(name);
}
