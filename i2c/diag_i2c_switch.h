// An I2C multiplexer: a bus that is itself a slave on an upstream bus and
// opens one or more downstream channels. Board code derives one class per
// multiplexer chip and supplies the channel operations, which all return 0 on
// failure.
#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "i2c/diag_i2c_device.h"

class CDiagI2cSwitch : public CI2cDevice {
  public:
    CDiagI2cSwitch(const std::string& name, const std::string& description);

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
    virtual void ClearAllDeviceAddrList() = 0;

    // The addresses found on channel `ch`.
    virtual std::list<uint8_t> GetMyDeviceAddrList(uint8_t ch) = 0;
    virtual void ShowMyDeviceAddrList(uint8_t ch) = 0;
    virtual void AddMyDeviceAddr(uint8_t ch, uint8_t addr) = 0;
    virtual void ClearMyDeviceAddrList() = 0;
};
