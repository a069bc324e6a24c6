#include "framework/diag_device.h"

#include <gtest/gtest.h>

namespace {

class CResetDevice : public CDiagDevice {
  public:
    CResetDevice() : CDiagDevice("device", "", TDEVICE) {}
    void DevReset() override {
        ++m_resets;
        m_status_at_reset = GetTestStatus();
    }
    int m_resets = 0;
    ETestStatus m_status_at_reset = DS_SKIPPED;
};

TEST(Device, IsANodeOfTheGivenType) {
    const CDiagDevice device("i2c-0", "I2C bus", TDEVICE);
    EXPECT_EQ(device.GetNodeType(), TDEVICE);
    EXPECT_STREQ(device.GetName(), "i2c-0");
    EXPECT_STREQ(device.GetDescription(), "I2C bus");
}

TEST(Device, BeginsOperationalUntestedAndWithoutFailures) {
    const CDiagDevice device("device", "", TDEVICE);
    EXPECT_TRUE(device.CheckOperational());
    EXPECT_EQ(device.GetTestStatus(), DS_UNTESTED);
    EXPECT_EQ(device.GetFailures(), 0U);
}

TEST(Device, IsOperationalAsItIsTold) {
    CDiagDevice device("device", "", TDEVICE);
    device.SetOperational(false);
    EXPECT_FALSE(device.CheckOperational());
    device.SetOperational(true);
    EXPECT_TRUE(device.CheckOperational());
}

TEST(Device, RemembersItsTestStatusAndCountsItsFailures) {
    CDiagDevice device("device", "", TDEVICE);
    device.SetTestStatus(DS_PROGRESS);
    EXPECT_EQ(device.GetTestStatus(), DS_PROGRESS);
    device.CountFailure();
    device.CountFailure();
    EXPECT_EQ(device.GetFailures(), 2U);
}

TEST(Device, ForgetsStatusAndFailuresOnReset) {
    CDiagDevice device("device", "", TDEVICE);
    device.SetTestStatus(DS_FAILED);
    device.CountFailure();
    device.Reset();
    EXPECT_EQ(device.GetTestStatus(), DS_UNTESTED);
    EXPECT_EQ(device.GetFailures(), 0U);
}

TEST(Device, CallsItsOwnResetAfterForgetting) {
    CResetDevice device;
    device.SetTestStatus(DS_FAILED);
    device.Reset();
    EXPECT_EQ(device.m_resets, 1);
    EXPECT_EQ(device.m_status_at_reset, DS_UNTESTED);
}

TEST(Device, ResetsTheDevicesBelowIt) {
    CDiagDevice device("device", "", TDEVICE);
    auto* menu = new CDiagMenu(TMENU, "ch0", "");
    device.AddChild(menu, CDiagObj::NO_SORT);
    auto* below = new CResetDevice;
    menu->AddChild(below, CDiagObj::NO_SORT);
    device.Reset();
    EXPECT_EQ(below->m_resets, 1);
}

TEST(Device, ReportsNoInterruptOfItsOwn) {
    CDiagDevice device("device", "", TDEVICE);
    uint8_t mask = 0xFF;
    device.CauseInterrupts(&mask);
    EXPECT_FALSE(device.PollInterrupts(&mask, 0));
}

}  // namespace
