// The abstract I2C bus: moves transfer records and SMBus operations to slave
// addresses, keeps the list of addresses found, and finds the switches among
// its children. Commands: "chk-dev", "probe", "trans", "set-sw-mode".
//
// A board derives its root buses from this class; CDiagI2cSwitch is the
// library's own subclass.
#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "framework/diag_device.h"
#include "framework/diag_mutex.h"
#include "i2c/i2c_xfr_req.h"

class CI2cDevice : public CDiagDevice {
  public:
    // The addresses that a probe tries.
    static constexpr uint8_t FIRST_PROBE_ADDR = 0x01;
    static constexpr uint8_t LAST_PROBE_ADDR = 0x7D;

    CI2cDevice(const std::string& name, const std::string& description);

    // Moves one transfer; on failure returns false and leaves a text in errmsg.
    virtual bool I2cTrans(CI2cXfrReq& req) = 0;
    // The same transfer without any switch path handling.
    virtual bool DirectI2cTrans(CI2cXfrReq& req) = 0;
    // The largest tsize that the controller accepts.
    virtual uint32_t GetMaxTransSize() = 0;
    // Whether a one-byte read from `addr` is acknowledged; prints what it finds.
    virtual bool check_dev(uint8_t addr);
    // Reads from every address, remembers those that answer and goes on with
    // the switches of this bus.
    virtual bool probe(int level);
    // Closes the channels of every known switch and warns of unknown devices
    // in the multiplexers' address range.
    virtual bool DisableAllSwitches();

    // The SMBus operations; `ch` is a switch channel, -1 for none.
    virtual bool smb_write_quick(int8_t ch, uint8_t addr) = 0;
    virtual bool smb_read_quick(int8_t ch, uint8_t addr) = 0;
    virtual bool smb_send_byte(int8_t ch, uint8_t addr, uint8_t data) = 0;
    virtual bool smb_receive_byte(int8_t ch, uint8_t addr, uint8_t* data) = 0;
    virtual bool smb_write_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t data) = 0;
    virtual bool smb_read_byte(int8_t ch, uint8_t addr, uint8_t cmd, uint8_t* data) = 0;
    virtual bool smb_write_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t data) = 0;
    virtual bool smb_read_word(int8_t ch, uint8_t addr, uint8_t cmd, uint16_t* data) = 0;
    virtual bool smb_block_write(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                 uint8_t* buf) = 0;
    virtual bool smb_block_read(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                uint8_t* buf) = 0;
    virtual bool smb_block_process_call(int8_t ch, uint8_t addr, uint8_t cmd, uint32_t len,
                                        uint8_t* buf) = 0;

    // Sets or shows the path mode (0 to 3) of every switch below.
    virtual void SetSwMode(uint8_t mode);
    virtual void ShowSwMode();

    // The list of addresses found, without duplicates, in order of discovery.
    void AddMyDeviceAddr(uint8_t addr);
    bool isOnMyDeviceList(uint8_t addr) const;
    void ShowMyDeviceAddrList() const;
    void ClearMyDeviceAddrList() { m_my_device_addr.clear(); }
    // Clears this list and those of every switch below.
    void ClearAllDeviceAddrList();
    std::list<uint8_t> GetMyDeviceAddrList() const { return m_my_device_addr; }

    bool m_is_master = true;    // a root bus, false for a switch
    std::string my_class_name;  // board code's own
    // The bus lock, held by slaves for one access; the bus itself does not take it.
    CMutex m_lock;

  private:
    std::list<uint8_t> m_my_device_addr;
};
