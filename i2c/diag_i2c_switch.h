// An I2C multiplexer: a bus that is itself a slave on an upstream bus and
// opens one or more downstream channels. It moves nothing itself: transfers
// climb to the root bus, once the channels on the way are selected as the path
// mode demands. Commands: those of the bus but "set-sw-mode" (modes reach a
// switch only from its bus), and one for each channel operation.
//
// Board code derives one class per multiplexer chip and supplies the channel
// operations, which all return 0 on failure. Switches hang below a bus or below
// a channel menu of another switch. No lock is taken here: slaves hold m_lock
// around an access, and the root bus serialises the wire.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <string>

#include "i2c/diag_i2c_device.h"

class CI2cProbeRead;

class CDiagI2cSwitch : public CI2cDevice {
  public:
    // Who selects channels, and when.
    enum EPathMode : uint8_t {
        PATH_BY_HAND = 0,       // the operator, with the channel commands
        PATH_PER_COMMAND = 1,   // opened before a slave's command, closed after it
        PATH_LEFT_OPEN = 2,     // opened before a slave's command
        PATH_PER_TRANSFER = 3,  // announced for every transfer
    };

    // Both name the switch "NAME-DEVID". The first is for a switch on a root
    // bus, the second for one on a channel of another switch.
    CDiagI2cSwitch(const std::string& name, const std::string& description, uint32_t devId);
    CDiagI2cSwitch(const std::string& name, const std::string& description, uint32_t devId,
                   int8_t upstream_ch);

    bool I2cTrans(CI2cXfrReq& req) override;
    bool DirectI2cTrans(CI2cXfrReq& req) override;
    // Finds the devices of every channel that are not seen upstream already;
    // `level` is 0 where the probe starts and grows by one per switch.
    bool probe(int level) override;
    bool DisableAllSwitches() override;

    bool smb_write_quick(int8_t ch, uint8_t addr) override;
    bool smb_read_quick(int8_t ch, uint8_t addr) override;
    bool smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) override;
    bool smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) override;
    bool smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) override;
    bool smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) override;
    bool smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) override;
    bool smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) override;
    bool smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len, uint8_t* buf) override;
    bool smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                uint8_t* buf) override;

    // Sets or shows the path mode of this switch and of every switch below.
    void SetSwMode(uint8_t mode) override;
    void ShowSwMode() override;

    virtual int getNumberofChannels() = 0;
    // Prints the channel state.
    virtual int ShowChannels() = 0;
    // Enables one channel, leaving the others.
    virtual int SetChannel(uint8_t ch) = 0;
    virtual int ClearChannel(uint8_t ch) = 0;
    // Enables or disables the channels of a bit mask.
    virtual int SetChannels(uint32_t mask) = 0;
    virtual int ClearChannels(uint32_t mask) = 0;
    // Makes `ch` the only open channel.
    virtual int SelChannel(uint8_t ch) = 0;
    virtual int DisableChannels() = 0;
    // The tree node under which the devices of channel `ch` hang.
    virtual CDiagMenu* getChannelMenu(int ch) = 0;
    // The switch's own slave address.
    virtual uint8_t getI2cAddr() = 0;

    // Forgets the devices of this switch and of every switch below.
    virtual void ClearAllDeviceAddrList();
    // The addresses found on channel `ch`.
    virtual std::list<uint8_t> GetMyDeviceAddrList(uint8_t ch) = 0;
    virtual void ShowMyDeviceAddrList(uint8_t ch) = 0;
    virtual void AddMyDeviceAddr(uint8_t ch, uint8_t addr) = 0;
    virtual void ClearMyDeviceAddrList() = 0;

    // The bus or switch that this switch hangs on; null, and a log line, when
    // it hangs on neither.
    CI2cDevice* GetI2cParentDevice();

    // Opens the way from the root bus to channel `ch`, from the top down.
    bool EnablePath(int ch);
    // Closes the way, from this switch up.
    bool ClearPath();
    // The path mode of this switch alone, an EPathMode.
    void SetPathConfigMode(uint8_t mode);
    void ShowPathConfigMode();

    // The channel of the upstream switch that leads here, -1 on a root bus.
    int8_t GetUpStreamChannel() const { return m_upstream_ch; }

    // The addresses that answered on the upstream bus in the last probe that
    // began at this switch.
    bool isOnUpstreamBus(uint8_t addr) const;
    void AddUpstreamDeviceAddr(uint8_t addr) { m_upstream_device_addr.push_back(addr); }
    // Whether a probe that is `level` switches deep here saw `addr` above.
    bool isOnParentBus(uint8_t addr, uint8_t level);

  protected:
    static constexpr int8_t NO_CHANNEL = -1;

    bool m_is_probing = false;  // the probe drives the channels: leave the path alone
    uint32_t m_devId;
    int8_t m_upstream_ch;
    bool m_sw_mode = false;  // PATH_PER_TRANSFER
    uint8_t m_auto_path = PATH_PER_COMMAND;
    CI2cDevice* m_pDev = nullptr;  // the upstream device, found when first needed
    std::list<uint8_t> m_upstream_device_addr;

  private:
    bool FindUpstream();
    CI2cDevice* PlainParent() const;
    void AnnouncePath(const CI2cXfrReq& req);
    bool Forward(CI2cXfrReq& req);

    bool ProbeUpstream();
    void ProbeChannel(uint8_t ch, int level);
    bool ProbeAddress(CI2cProbeRead& read, uint8_t ch, uint8_t addr, int level);

    // The switches that hang on channel `ch`, and those on any channel.
    void ForEachSwitchOf(int ch, const std::function<void(CDiagI2cSwitch&)>& action);
    void ForEachSwitch(const std::function<void(uint8_t ch, CDiagI2cSwitch&)>& action);
    template <class Operation>
    bool ForwardSmbus(int8_t ch, Operation operation);
};
