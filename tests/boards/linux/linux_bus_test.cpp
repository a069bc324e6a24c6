// What the kernel is asked for when a record goes out, and how often.
#include "tests/boards/linux/linux_bus_test.h"

#include "tests/support/thrown_text.h"

namespace {

using LinuxBus = CLinuxBusTest;

// Before a write the kernel is asked whose the address is.
using CCalls = std::vector<std::string>;

TEST_F(LinuxBus, ReadsWithoutCommandInOneMessage) {
    m_dev.bytes = {0xA1, 0xA2};
    EXPECT_TRUE(Read(0, 0, 2));
    EXPECT_EQ(m_dev.Call(), "rdwr {addr 0x50 flags 0x1 len 2}");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
    EXPECT_EQ(m_data[2], 0x33);
}

TEST_F(LinuxBus, ReadsBehindCommandBytesInOneCombinedTransfer) {
    m_dev.bytes = {0xA1};
    EXPECT_TRUE(Read(2, 0xAB12, 1));
    EXPECT_EQ(m_dev.calls,
              (std::vector<std::string>{
                  "slave 0x50",  // whose is it?
                  "rdwr {addr 0x50 flags 0x0 len 2 12 ab} {addr 0x50 flags 0x1 len 1}"}));
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(LinuxBus, ReadsTheLongestRecordInOneTransfer) {
    EXPECT_TRUE(Read(1, 0x12, 255));
    EXPECT_EQ(m_dev.Call(), "rdwr {addr 0x50 flags 0x0 len 1 12} {addr 0x50 flags 0x1 len 255}");
}

TEST_F(LinuxBus, WritesDataAlone) {
    EXPECT_TRUE(Write(0, 0, 3));
    EXPECT_EQ(m_dev.calls, (CCalls{"slave 0x50", "rdwr {addr 0x50 flags 0x0 len 3 11 22 33}"}));
}

TEST_F(LinuxBus, WritesCommandAndDataInOneMessage) {
    EXPECT_TRUE(Write(1, 0xAB, 2));
    EXPECT_EQ(m_dev.calls, (CCalls{"slave 0x50", "rdwr {addr 0x50 flags 0x0 len 3 ab 11 22}"}));
}

TEST_F(LinuxBus, WritesTheLongestRecordInOneMessage) {
    EXPECT_TRUE(Write(2, 0, 255));
    ASSERT_EQ(m_dev.calls.size(), 2U);
    EXPECT_TRUE(m_dev.calls[1].starts_with("rdwr {addr 0x50 flags 0x0 len 257 00 00 11 22 33 00"))
        << m_dev.calls[1];
}

TEST_F(LinuxBus, SendsEmptyMessagesInBothDirections) {
    EXPECT_TRUE(Write(0, 0, 0));
    EXPECT_TRUE(Read(0, 0, 0));
    EXPECT_EQ(m_dev.calls,
              (CCalls{"rdwr {addr 0x50 flags 0x0 len 0}", "rdwr {addr 0x50 flags 0x1 len 0}"}));
}

TEST_F(LinuxBus, SendsNoEmptyMessageWithoutQuickCommand) {
    m_dev.functions &= ~static_cast<unsigned long>(I2C_FUNC_SMBUS_QUICK);
    EXPECT_FALSE(Write(0, 0, 0));
    EXPECT_EQ(m_errmsg,
              "/dev/i2c-3 (Bench adapter) has no I2C_FUNC_SMBUS_QUICK: it cannot quick write");
    EXPECT_FALSE(Read(0, 0, 0));
    EXPECT_EQ(m_errmsg,
              "/dev/i2c-3 (Bench adapter) has no I2C_FUNC_SMBUS_QUICK: it cannot quick read");
    EXPECT_TRUE(m_dev.calls.empty());
}

// Plain reads of count and bytes: what every adapter for I2C can do.
TEST_F(LinuxBus, ReadsSmbusBlocksAsMessages) {
    m_dev.bytes = {2, 0xA1, 0xA2};
    EXPECT_TRUE(Bus().smb_block_read(-1, 0x2A, 0x05, 2, m_data.data()));
    EXPECT_EQ(m_dev.Call(), "rdwr {addr 0x2a flags 0x0 len 1 05} {addr 0x2a flags 0x1 len 3}");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
}

TEST_F(LinuxBus, RefusesMoreMessagesThanARecordHas) {
    uint8_t byte = 0;
    const CI2cMsg msg = {0x50, true, std::span(&byte, 1)};
    const std::array msgs = {msg, msg, msg};
    const CI2cResult result = Bus().Move(msgs);
    EXPECT_EQ(result.outcome, I2C_OTHER);
    EXPECT_EQ(result.text,
              "0x50: read 1 byte, read 1 byte, read 1 byte on /dev/i2c-3: more messages than a bus "
              "carries in one transfer");
    EXPECT_TRUE(m_dev.calls.empty());
}

TEST_F(LinuxBus, MovesAllThatARecordCanAskFor) {
    EXPECT_EQ(Bus().GetMaxTransSize(), 255U);
}

TEST_F(LinuxBus, CanBeAskedInEveryWayThatTheAdapterKnows) {
    EXPECT_TRUE(Bus().CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_TRUE(Bus().CanAsk(EScanAccess::RECEIVE_BYTE));
}

TEST_F(LinuxBus, CannotBeAskedByQuickWriteWithoutThatFunction) {
    m_dev.functions = I2C_FUNC_I2C;
    EXPECT_FALSE(Bus().CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_TRUE(Bus().CanAsk(EScanAccess::RECEIVE_BYTE));
}

TEST_F(LinuxBus, CannotBeAskedByReadsThatAnSmbusAdapterLacks) {
    m_dev.functions = I2C_FUNC_SMBUS_QUICK;
    EXPECT_TRUE(Bus().CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_FALSE(Bus().CanAsk(EScanAccess::RECEIVE_BYTE));
}

TEST_F(LinuxBus, CanBeAskedByTheReadsOfAnSmbusAdapter) {
    m_dev.functions = I2C_FUNC_SMBUS_READ_BYTE;
    EXPECT_FALSE(Bus().CanAsk(EScanAccess::QUICK_WRITE));
    EXPECT_TRUE(Bus().CanAsk(EScanAccess::RECEIVE_BYTE));
}

TEST_F(LinuxBus, OpensItsFileOnceAndClosesItOnce) {
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_TRUE(Read(1, 0, 1));
    EXPECT_TRUE(Write(1, 0, 1));
    m_bus.reset();
    EXPECT_EQ(m_dev.files, (CCalls{"open /dev/i2c-3", "close"}));
}

TEST_F(LinuxBus, SaysWhyItsFileCannotBeOpened) {
    const auto text = [this](int error) {
        m_dev.opens = {-error};
        return ThrownText([this] { Bus(); });
    };
    EXPECT_EQ(
        text(ENOENT),
        "/dev/i2c-3 cannot be opened: ENOENT (No such file or directory); is the kernel module "
        "i2c-dev loaded?");
    EXPECT_EQ(text(EACCES),
              "/dev/i2c-3 cannot be opened: EACCES (Permission denied); root may, and often the "
              "group i2c");
    EXPECT_EQ(text(EMFILE), "/dev/i2c-3 cannot be opened: EMFILE (Too many open files)");
    EXPECT_EQ(m_dev.OpenFiles(), 0);
}

TEST_F(LinuxBus, SaysThatAFileIsNoAdapterAndClosesIt) {
    m_dev.function_queries = {-ENOTTY};
    EXPECT_EQ(ThrownText([this] { Bus(); }),
              "/dev/i2c-3 is no I2C adapter: ENOTTY (Inappropriate ioctl for device)");
    EXPECT_EQ(m_dev.files, (CCalls{"open /dev/i2c-3", "close"}));
}

TEST_F(LinuxBus, NamesItselfAndItsFileWhereTheyDiffer) {
    CTestLinuxBus bus("main", "bus of the kernel", "/dev/i2c-3", m_fake_sysfs.Sysfs(), m_dev);
    m_dev.transfers = {-EIO};
    uint8_t byte = 0;
    EXPECT_FALSE(bus.smb_receive_byte(-1, 0x50, &byte));
    EXPECT_EQ(bus.GetLastError(),
              "0x50: read 1 byte on main (/dev/i2c-3): EIO (Input/output error)");
}

}  // namespace
