// The hardware of a description, simulated chip by chip. Memories live in files below
// `state`, at their place in the topology, and begin with what the file of the same
// place below `images` holds.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "boards/devicetree/board_hardware.h"
#include "boards/devicetree/sim_parts.h"
#include "boards/sim/sim_bus.h"
#include "boards/sim/sim_device.h"
#include "boards/sim/sim_segment.h"

class CSimHardware : public IBoardHardware {
  public:
    CSimHardware(std::filesystem::path images, std::filesystem::path state);

    // The buses, until the tree that they hang in is gone.
    const std::vector<CSimBus*>& Buses() const { return m_sim->GetBuses(); }

    // The node "sim" stands beside the buses.
    void Begin(CDiagMenu& root, CTreeNames& names) override;
    void End(CDiagMenu& root) override;
    bool HasBus(const CDeviceTreeNode& node) const override;
    std::unique_ptr<CRootBus> CreateBus(const CDeviceRequest& request,
                                        const std::string& name) override;
    bool IsMuxDriven(const CI2cWire&, uint8_t) const override { return false; }
    std::unique_ptr<CRootBus> CreateChannelBus(const CI2cWire&, uint8_t, unsigned int,
                                               const std::string&) override {
        return nullptr;
    }
    CShow PlaceChip(const CDeviceRequest& request, const CBinding& binding, uint8_t addr,
                    const CI2cWire& wire) override;
    std::string NoteOf(const CI2cWire&, uint8_t) const override { return {}; }
    // "io-ports/ADDRESS.bin" below the state folder; a missing one is made, all pins high.
    ports_file_t PortsFile(const CDeviceTreeNode& node, uint64_t address, uint32_t ports) override;

  private:
    // A root bus and -1, or a switch and its channel.
    using CWireKey = std::pair<const CI2cDevice*, int8_t>;

    void LockState() const;
    void Show(const CSimParts& chip, CDiagMenu& device);
    std::string TakeName(const CDiagObj& device);

    const std::filesystem::path m_images;
    const std::filesystem::path m_state;
    std::unique_ptr<CSimDevice> m_unmounted;  // until it stands in the tree
    CSimDevice* const m_sim;
    CTreeNames* m_names = nullptr;
    std::map<CWireKey, CSimSegment*> m_segments;
};
