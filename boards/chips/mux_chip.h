// A multiplexer of the PCA954x family on its upstream bus. The channels hang
// below it as menus "ch0", "ch1", ...
//
// Channel operations write and read the chip's control register through the
// switch's own transfers. What is refused or fails is logged with its reason.
//
// Selecting a channel makes it the only way down from its piece of wire: other
// multiplexers there, and those on the channel, are closed if they may be open.
// Else two chips of one address would answer, and be written, together. Who
// wants that sets channels.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "boards/chips/mux_part.h"
#include "framework/bus_scan.h"
#include "framework/shared_path.h"
#include "i2c/diag_i2c_switch.h"

class CMuxChip : public CDiagI2cSwitch, public ISharedPath, public IBusScan {
  public:
    // `addr`: the chip's slave address; `upstream_ch`: the channel of the
    // switch it hangs on, -1 on a root bus. `part` must outlive the chip.
    CMuxChip(const mux_part_t& part, const std::string& name, const std::string& description,
             uint32_t devId, uint8_t addr, int8_t upstream_ch);

    // That of the upstream bus.
    uint32_t GetMaxTransSize() override;
    // Opens the way to the chip, where the probe begins with it.
    bool probe(int level) override;

    int getNumberofChannels() override { return m_part.channels; }
    // Prints the control register as the chip has it, and what it stands for.
    int ShowChannels() override;
    // Parts with an enable bit open one channel at a time; they refuse a second.
    int SetChannel(uint8_t ch) override;
    int ClearChannel(uint8_t ch) override;
    int SetChannels(uint32_t mask) override;
    int ClearChannels(uint32_t mask) override;
    int SelChannel(uint8_t ch) override;
    int DisableChannels() override;
    CDiagMenu* getChannelMenu(int ch) override;
    uint8_t getI2cAddr() override { return m_addr; }

    std::list<uint8_t> GetMyDeviceAddrList(uint8_t ch) override;
    void ShowMyDeviceAddrList(uint8_t ch) override;
    void AddMyDeviceAddr(uint8_t ch, uint8_t addr) override;
    void ClearMyDeviceAddrList() override;

    // All channels of all multiplexers below one root bus make one path:
    // whatever is open answers together.
    const CDiagDevice* PathTo(const CDiagDevice& target) const override;

    // Scanning: each channel is a wire, and the bus above asks. The way is opened and
    // closed whatever the path mode, as a probe does it.
    std::vector<const CDiagMenu*> GetWires() const override;
    void OpenWire(size_t wire) override;
    bool CloseWay() override;
    bool CanAsk(EScanAccess access) override;
    CScanAnswer Ask(uint8_t addr, EScanAccess access) override;
    std::string OwnerOf(uint8_t addr) override;
    bool HasOwned(uint8_t addr) override;
    std::string NameAt(size_t wire, uint8_t addr) const override;
    // Says what hangs on a channel at an address.
    void SetNameAt(uint8_t ch, uint8_t addr, const std::string& name);

  private:
    struct CChannel {
        CDiagMenu* menu;  // a child
        std::list<uint8_t> found;
        std::map<uint8_t, std::string> names;  // by address
    };

    IBusScan& BusAbove();
    bool OpenTo(uint8_t ch);

    CMuxChip* Upstream() const;
    bool OpenWay();
    bool CloseOthers(const CDiagObj& wire) const;
    bool CloseOrMiss();
    bool HasChannel(uint8_t ch);
    bool HasChannels(uint32_t mask);
    int Open(uint32_t mask);
    std::optional<uint8_t> ReadControl();
    bool WriteControl(uint8_t control);
    bool TransferControl(CI2cXfrReq& req, byte_t& control);

    const mux_part_t& m_part;
    const uint8_t m_addr;
    std::vector<CChannel> m_channels;
    bool m_may_be_open = true;  // until it has been closed from here
};
