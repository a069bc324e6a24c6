// The tables of the I2C classes that board code derives from.
#include <gtest/gtest.h>

#include <cstdint>
#include <list>

#include "i2c/diag_i2c_device.h"
#include "i2c/diag_i2c_switch.h"
#include "tests/support/virtual_slot.h"

namespace {

using Transfer = bool(CI2cXfrReq&);
using Block = bool(int8_t, uint8_t, uint8_t, uint32_t, uint8_t*);

TEST(I2cVirtualSlots, BusesAddTransfersAndTheirOwnOperations) {
    EXPECT_EQ(SlotOf<Transfer>(&CI2cDevice::I2cTrans), 14U);
    EXPECT_EQ(SlotOf<Transfer>(&CI2cDevice::DirectI2cTrans), 15U);
    EXPECT_EQ(SlotOf<uint32_t()>(&CI2cDevice::GetMaxTransSize), 16U);
    EXPECT_EQ(SlotOf<bool(uint8_t)>(&CI2cDevice::check_dev), 17U);
    EXPECT_EQ(SlotOf<bool(int)>(&CI2cDevice::probe), 18U);
    EXPECT_EQ(SlotOf<bool()>(&CI2cDevice::DisableAllSwitches), 19U);
    EXPECT_EQ(SlotOf<void(uint8_t)>(&CI2cDevice::SetSwMode), 31U);
    EXPECT_EQ(SlotOf<void()>(&CI2cDevice::ShowSwMode), 32U);
}

TEST(I2cVirtualSlots, BusesHaveElevenSmbusOperationsInARow) {
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t)>(&CI2cDevice::smb_write_quick)), 20U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t)>(&CI2cDevice::smb_read_quick)), 21U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t)>(&CI2cDevice::smb_send_byte)), 22U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t*)>(&CI2cDevice::smb_receive_byte)), 23U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t, uint8_t)>(&CI2cDevice::smb_write_byte)), 24U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t, uint8_t*)>(&CI2cDevice::smb_read_byte)), 25U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t, uint16_t)>(&CI2cDevice::smb_write_word)), 26U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t, uint8_t, uint16_t*)>(&CI2cDevice::smb_read_word)), 27U);
    EXPECT_EQ(SlotOf<Block>(&CI2cDevice::smb_block_write), 28U);
    EXPECT_EQ(SlotOf<Block>(&CI2cDevice::smb_block_read), 29U);
    EXPECT_EQ(SlotOf<Block>(&CI2cDevice::smb_block_process_call), 30U);
}

TEST(I2cVirtualSlots, BusesKeepTheirAddressListOutOfTheTable) {
    EXPECT_EQ(SlotOf<void(uint8_t)>(&CI2cDevice::AddMyDeviceAddr), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf<void()>(&CI2cDevice::ClearAllDeviceAddrList), NOT_VIRTUAL);
    EXPECT_EQ(SlotAfter<CI2cDevice>(), 33U);
}

TEST(I2cVirtualSlots, SwitchesAddChannelOperations) {
    EXPECT_EQ(SlotOf<int()>(&CDiagI2cSwitch::getNumberofChannels), 33U);
    EXPECT_EQ(SlotOf<int()>(&CDiagI2cSwitch::ShowChannels), 34U);
    EXPECT_EQ(SlotOf<int(uint8_t)>(&CDiagI2cSwitch::SetChannel), 35U);
    EXPECT_EQ(SlotOf<int(uint8_t)>(&CDiagI2cSwitch::ClearChannel), 36U);
    EXPECT_EQ(SlotOf<int(uint32_t)>(&CDiagI2cSwitch::SetChannels), 37U);
    EXPECT_EQ(SlotOf<int(uint32_t)>(&CDiagI2cSwitch::ClearChannels), 38U);
    EXPECT_EQ(SlotOf<int(uint8_t)>(&CDiagI2cSwitch::SelChannel), 39U);
    EXPECT_EQ(SlotOf<int()>(&CDiagI2cSwitch::DisableChannels), 40U);
    EXPECT_EQ(SlotOf<CDiagMenu*(int)>(&CDiagI2cSwitch::getChannelMenu), 41U);
    EXPECT_EQ(SlotOf<uint8_t()>(&CDiagI2cSwitch::getI2cAddr), 42U);
}

TEST(I2cVirtualSlots, SwitchesAddAddressListsPerChannel) {
    using CAddressList = std::list<uint8_t>;
    EXPECT_EQ(SlotOf<void()>(&CDiagI2cSwitch::ClearAllDeviceAddrList), 43U);
    EXPECT_EQ(SlotOf<CAddressList(uint8_t)>(&CDiagI2cSwitch::GetMyDeviceAddrList), 44U);
    EXPECT_EQ(SlotOf<void(uint8_t)>(&CDiagI2cSwitch::ShowMyDeviceAddrList), 45U);
    EXPECT_EQ((SlotOf<void(uint8_t, uint8_t)>(&CDiagI2cSwitch::AddMyDeviceAddr)), 46U);
    EXPECT_EQ(SlotOf<void()>(&CDiagI2cSwitch::ClearMyDeviceAddrList), 47U);
    EXPECT_EQ(SlotAfter<CDiagI2cSwitch>(), 48U);
}

TEST(I2cVirtualSlots, SwitchesOverrideTheOperationsOfBusesInTheirPlaces) {
    EXPECT_EQ(SlotOf<Transfer>(&CDiagI2cSwitch::I2cTrans), 14U);
    EXPECT_EQ(SlotOf<Transfer>(&CDiagI2cSwitch::DirectI2cTrans), 15U);
    EXPECT_EQ(SlotOf<bool(int)>(&CDiagI2cSwitch::probe), 18U);
    EXPECT_EQ(SlotOf<bool()>(&CDiagI2cSwitch::DisableAllSwitches), 19U);
    EXPECT_EQ((SlotOf<bool(int8_t, uint8_t)>(&CDiagI2cSwitch::smb_write_quick)), 20U);
    EXPECT_EQ(SlotOf<Block>(&CDiagI2cSwitch::smb_block_process_call), 30U);
    EXPECT_EQ(SlotOf<void(uint8_t)>(&CDiagI2cSwitch::SetSwMode), 31U);
    EXPECT_EQ(SlotOf<void()>(&CDiagI2cSwitch::ShowSwMode), 32U);
}

}  // namespace
