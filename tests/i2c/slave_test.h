// What the tests of slaves share: a slave whose fields are open.
#pragma once

#include <gmock/gmock.h>

#include "i2c/DiagI2cSlaveDevice.h"
#include "tests/i2c/switch_test.h"

class CTestSlave : public CDiagI2cSlaveDevice {
  public:
    explicit CTestSlave(CI2cDevice* bus) : CDiagI2cSlaveDevice("chip", "a slave", bus) {}

    using CDiagI2cSlaveDevice::m_i2c_addr;
    using CDiagI2cSlaveDevice::m_i2c_ch;
    using CDiagI2cSlaveDevice::m_i2cDev;
};

// One slave below the root bus and one below channel 1 of "mux-2", which is on
// channel 0 of "top-1".
class CSlaveTest : public CSwitchTest {
  protected:
    CSlaveTest()
        : m_top(AddSwitch("top", 1, 0x70)),
          m_mux(AddSwitch(m_top, 0, "mux", 2, 0x71)),
          m_on_bus(*new CTestSlave(&m_bus)),
          m_chip(*new CTestSlave(&m_mux)) {
        m_bus.AddChild(&m_on_bus, CDiagObj::NO_SORT);
        m_mux.getChannelMenu(1)->AddChild(&m_chip, CDiagObj::NO_SORT);
        m_chip.m_i2c_ch = 1;
        m_chip.m_i2c_addr = 0x50;
    }

    CJournalSwitch& m_top;
    CJournalSwitch& m_mux;
    CTestSlave& m_on_bus;
    CTestSlave& m_chip;

    // What the switches say and do.
    const CEntries m_opened = {
        Trace("(mux-2): enable upstream switch top-1 channel = 0\n"),
        Trace("(top-1): select channel"),
        Call("top-1: SelChannel(0)"),
        Trace("(mux-2): select channel"),
        Call("mux-2: SelChannel(1)"),
    };
    const CEntries m_closed = {
        Trace("(mux-2): disable all channels"),
        Call("mux-2: DisableChannels()"),
        Trace("(mux-2): disable upstream switch top-1"),
        Trace("(top-1): disable all channels"),
        Call("top-1: DisableChannels()"),
    };
};
