// I2C_RDWR and plain reads and writes, as a program meets them.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/boards/i2c_sim/adapter_access.h"

TEST(SimAdapter, MovesMessagesInOneTransfer) {
    const CAdapterFile bus(BUS_0);
    CBytes in(3);
    EXPECT_EQ(bus.WriteRead(EEPROM, {0, 0}, in), 2);
    EXPECT_EQ(in, (CBytes{0x01, 0x02, 0x03}));
}

TEST(SimAdapter, MovesMessagesToSeveralAddresses) {
    const CAdapterFile bus(BUS_0);
    CBytes zero = {0, 0};
    CBytes maker = {MAKER_REG};
    CBytes in_eeprom(2);
    CBytes in_sensor(1);
    EXPECT_EQ(
        bus.Transfer(
            {CAdapterFile::WriteMsg(EEPROM, zero), CAdapterFile::ReadMsg(EEPROM, in_eeprom),
             CAdapterFile::WriteMsg(SENSOR, maker), CAdapterFile::ReadMsg(SENSOR, in_sensor)}),
        4);
    EXPECT_EQ(in_eeprom, (CBytes{0x01, 0x02}));
    EXPECT_EQ(in_sensor, CBytes{MAKER});
}

TEST(SimAdapter, SaysThatNobodyAcknowledged) {
    const CAdapterFile bus(BUS_0);
    CBytes in(1, 0x55);
    EXPECT_EQ(bus.WriteRead(NOBODY, {0}, in), -ENXIO);
    EXPECT_EQ(in, CBytes{0x55});
}

TEST(SimAdapter, MovesAsMuchAsTheKernelDoes) {
    const CAdapterFile bus(BUS_0);
    CBytes zero = {0, 0};
    std::vector<CBytes> in(41, CBytes(8192));
    std::vector<i2c_msg> msgs = {CAdapterFile::WriteMsg(EEPROM, zero)};
    for (CBytes& bytes : in) {
        msgs.push_back(CAdapterFile::ReadMsg(EEPROM, bytes));
    }
    ASSERT_EQ(bus.Transfer(msgs), 42);
    // The chip has 8192 bytes and begins anew behind the last.
    EXPECT_EQ(in[0][0], 0x01);
    EXPECT_EQ(in[40], in[0]);
}

TEST(SimAdapter, TakesAsMuchAsTheKernelDoes) {
    const CAdapterFile bus(BUS_1);
    // The pins of the expander follow all that is written, the last byte stays.
    std::vector<CBytes> out(42, CBytes(8192, 0x5A));
    std::vector<i2c_msg> msgs;
    for (CBytes& bytes : out) {
        bytes[0] = OUTPUT_REG;
        msgs.push_back(CAdapterFile::WriteMsg(CAGES, bytes));
    }
    ASSERT_EQ(bus.Transfer(msgs), 42);
    CBytes in(2);
    ASSERT_EQ(bus.WriteRead(CAGES, {OUTPUT_REG}, in), 2);
    EXPECT_EQ(in, (CBytes{0x5A, 0x5A}));
}

TEST(SimAdapter, RefusesWhatTheKernelRefuses) {
    const CAdapterFile bus(BUS_0);
    CBytes byte(1);
    CBytes long_one(8193);
    EXPECT_EQ(bus.Transfer({}), -EINVAL);
    EXPECT_EQ(bus.Transfer(std::vector(43, CAdapterFile::ReadMsg(SENSOR, byte))), -EINVAL);
    EXPECT_EQ(bus.Transfer({CAdapterFile::ReadMsg(SENSOR, long_one)}), -EINVAL);
    EXPECT_EQ(bus.Do(I2C_RDWR, nullptr), -EFAULT);
    i2c_rdwr_ioctl_data no_messages = {nullptr, 1};
    EXPECT_EQ(bus.Do(I2C_RDWR, &no_messages), -EINVAL);
}

TEST(SimAdapter, FindsBytesThatAreNotThere) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Transfer({{SENSOR, 0, 4, nullptr}}), -EFAULT);
    EXPECT_EQ(MakerThrough(bus), MAKER);
}

TEST(SimAdapter, RefusesMessagesOfKindsThatItHasNot) {
    const CAdapterFile bus(BUS_0);
    CBytes bytes(34);
    for (const uint16_t flag :
         std::initializer_list<uint16_t>{I2C_M_TEN, I2C_M_NOSTART, I2C_M_REV_DIR_ADDR,
                                         I2C_M_IGNORE_NAK, I2C_M_NO_RD_ACK, I2C_M_STOP}) {
        EXPECT_EQ(bus.Transfer({{SENSOR, flag, 1, bytes.data()}}), -EOPNOTSUPP) << flag;
    }
    EXPECT_EQ(bus.Transfer({{SENSOR, I2C_M_RD | I2C_M_RECV_LEN, 34, bytes.data()}}), -EOPNOTSUPP);
    EXPECT_EQ(bus.Transfer({{SENSOR, I2C_M_RD | I2C_M_RECV_LEN, 0, bytes.data()}}), -EINVAL);
    EXPECT_EQ(bus.Transfer({{SENSOR, I2C_M_RECV_LEN, 34, bytes.data()}}), -EINVAL);
}

// 5 ms of write cycle, in which no transfer makes time pass.
TEST(SimAdapter, LetsTheTimeOfTheProgramPassForTheChips) {
    const CAdapterFile bus(BUS_0);
    ASSERT_EQ(bus.Write(EEPROM, {0x1F, 0xF8, 0xA5}), 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    CBytes in(1);
    EXPECT_EQ(bus.WriteRead(EEPROM, {0x1F, 0xF8}, in), 2);
    EXPECT_EQ(in, CBytes{0xA5});
}

TEST(SimAdapter, AddressesWithoutBytes) {
    const CAdapterFile bus(BUS_0);
    EXPECT_EQ(bus.Transfer({{SENSOR, 0, 0, nullptr}}), 1);
    EXPECT_EQ(bus.Transfer({{NOBODY, 0, 0, nullptr}}), -ENXIO);
}

TEST(SimAdapter, ReadsAndWritesWithoutRequests) {
    const CAdapterFile bus(BUS_0);
    ASSERT_EQ(bus.Do(I2C_SLAVE, EEPROM), 0);
    const CBytes zero = {0, 1};
    EXPECT_EQ(::write(bus.Get(), zero.data(), zero.size()), 2);
    CBytes in(3);
    EXPECT_EQ(::read(bus.Get(), in.data(), in.size()), 3);
    EXPECT_EQ(in, (CBytes{0x02, 0x03, 0x51}));
    CBytes longest(10'000, 0x55);
    EXPECT_EQ(::read(bus.Get(), longest.data(), longest.size()), 8192);
    EXPECT_EQ(longest[8192], 0x55);
    ASSERT_EQ(bus.Do(I2C_SLAVE, NOBODY), 0);
    EXPECT_EQ(::read(bus.Get(), in.data(), in.size()), -1);
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(::write(bus.Get(), zero.data(), zero.size()), -1);
    EXPECT_EQ(errno, ENXIO);
}
