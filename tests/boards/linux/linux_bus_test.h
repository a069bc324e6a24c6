// A Linux bus on a noted system, "i2c-3" on an adapter of the same number.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

#include "boards/linux/linux_bus.h"
#include "host/diag_clock.h"
#include "tests/boards/linux/fake_i2c_dev.h"
#include "tests/boards/linux/fake_sysfs.h"

// Lives in the time of the test.
class CTestLinuxBus : public CLinuxBus {
  public:
    using CLinuxBus::CLinuxBus;
    // Messages as the root bus hands them over.
    CI2cResult Move(std::span<const CI2cMsg> msgs) { return Transfer(msgs, false); }

  protected:
    uint64_t NowMs() override { return GetDiagClock().NowMs(); }
};

class CLinuxBusTest : public testing::Test {
  protected:
    CLinuxBusTest() { m_fake_sysfs.AddAdapter(3, "Bench adapter"); }

    // Made when first asked for, so that a test can say before what it stands on.
    CTestLinuxBus& Bus() {
        if (m_bus == nullptr) {
            m_bus = std::make_unique<CTestLinuxBus>("i2c-3", "bus of the kernel", "/dev/i2c-3",
                                                    m_fake_sysfs.Sysfs(), m_dev);
        }
        return *m_bus;
    }
    bool Trans(uint8_t dir, uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        CI2cXfrReq req;
        req.saddr = 0x50;
        req.dir = dir;
        req.cmd_sel = cmd_sel;
        req.cmd = cmd;
        req.data = m_data.data();
        req.tsize = tsize;
        const bool ok = Bus().I2cTrans(req);
        m_errmsg = req.errmsg;
        return ok;
    }
    bool Read(uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        return Trans(1, cmd_sel, cmd, tsize);
    }
    bool Write(uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        return Trans(0, cmd_sel, cmd, tsize);
    }

    CFakeI2cDev m_dev;
    CFakeSysfs m_fake_sysfs;
    std::unique_ptr<CTestLinuxBus> m_bus;
    std::array<uint8_t, 255> m_data{0x11, 0x22, 0x33};
    std::string m_errmsg;
};
