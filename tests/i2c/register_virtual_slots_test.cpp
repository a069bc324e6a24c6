// The table of the register device that board code derives from.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>

#include "i2c/DiagI2cSlaveRegisterDevice.h"
#include "tests/support/virtual_slot.h"

namespace {

using Device = CDiagI2cSlaveRegisterDevice;
using Access = bool(diag_regdata_t*, diag_reg_st*, uint32_t);

TEST(I2cRegisterVirtualSlots, OverrideTheDumpAndAddNone) {
    EXPECT_EQ(SlotOf<void(std::string)>(&Device::showRegTable), 14U);
    EXPECT_EQ((SlotOf<bool(uint32_t, std::string)>(&Device::dumpRegs)), 15U);
    EXPECT_EQ(SlotOf<Access>(&Device::readRegEntry), 16U);
    EXPECT_EQ(SlotOf<Access>(&Device::writeRegEntry), 17U);
    EXPECT_EQ(SlotAfter<Device>(), 18U);
    EXPECT_TRUE(
        (std::is_same_v<decltype(&Device::dumpRegs), bool (Device::*)(uint32_t, std::string)>));
}

TEST(I2cRegisterVirtualSlots, LeaveTheAccessToTheBoard) {
    EXPECT_TRUE(std::is_abstract_v<Device>);
    EXPECT_TRUE(
        (std::is_same_v<decltype(&Device::readRegEntry),
                        bool (CDiagRegisterDevice::*)(diag_regdata_t*, diag_reg_st*, uint32_t)>));
}

TEST(I2cRegisterVirtualSlots, KeepThePathOutOfTheTable) {
    EXPECT_EQ(SlotOf<bool()>(&Device::EnablePath), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf<bool()>(&Device::ClearPath), NOT_VIRTUAL);
}

}  // namespace
