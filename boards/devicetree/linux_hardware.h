// The hardware of the machine that the program runs on, as far as its Linux kernel gives
// it out: I2C adapters, and multiplexers and chips that its own drivers have.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "boards/devicetree/board_hardware.h"
#include "boards/devicetree/device_tree.h"
#include "boards/linux/i2c_dev.h"
#include "boards/linux/i2c_sysfs.h"

class CLinuxHardware : public IBoardHardware {
  public:
    // Which device file belongs to which node of the tree, by path.
    using CBuses = std::map<std::string, std::string>;

    // A bus is the adapter that the kernel made for its node, or the one that `buses`
    // names. Throws CDiagException for a node there that the tree has not, for a device that
    // is no adapter, and for an adapter that is named twice.
    CLinuxHardware(const CDeviceTree& tree, CI2cSysfs sysfs, const CBuses& buses,
                   II2cDev& dev = KernelI2cDev());

    void Begin(CDiagMenu&, CTreeNames&) override {}
    // Warns of buses that were told, and whose nodes turned out to be none.
    void End(CDiagMenu&) override;
    bool HasBus(const CDeviceTreeNode& node) const override;
    std::unique_ptr<CRootBus> CreateBus(const CDeviceRequest& request,
                                        const std::string& name) override;
    // Those that a driver of the kernel is bound to.
    bool IsMuxDriven(const CI2cWire& wire, uint8_t addr) const override;
    std::unique_ptr<CRootBus> CreateChannelBus(const CI2cWire& wire, uint8_t addr,
                                               unsigned int channel,
                                               const std::string& name) override;
    // They are there already.
    CShow PlaceChip(const CDeviceRequest&, const CBinding&, uint8_t, const CI2cWire&) override {
        return [](CDiagMenu&) {};
    }
    std::string NoteOf(const CI2cWire& wire, uint8_t addr) const override;
    // All of the machine's memory.
    ports_file_t PortsFile(const CDeviceTreeNode& node, uint64_t address, uint32_t ports) override;

  private:
    void CheckAdapter(const std::string& node, const std::string& device) const;
    std::unique_ptr<CRootBus> Open(const std::string& name, const std::string& what,
                                   const std::string& device) const;

    const CI2cSysfs m_sysfs;
    II2cDev& m_dev;
    std::map<unsigned int, std::string> m_told;  // whose bus each adapter was told to be
    CBuses m_devices;     // the device file of each bus, by the path of its node
    CBuses m_given_away;  // whose bus the adapter of a node was told to be, by its path
    CBuses m_unused;      // of those that were told
};
