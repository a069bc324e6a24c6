// An adapter that is interrupted, or goes away.
#include <cerrno>

#include "tests/boards/linux/linux_bus_test.h"

namespace {

using CFiles = std::vector<std::string>;
using LinuxBusInterrupted = CLinuxBusTest;
using LinuxBusGone = CLinuxBusTest;

TEST_F(LinuxBusInterrupted, MakesTheTransferAgain) {
    m_dev.transfers = {-EINTR, -EINTR};
    m_dev.bytes = {0xA1};
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_EQ(m_dev.calls, CFiles(3, "rdwr {addr 0x50 flags 0x1 len 1}"));
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(LinuxBusInterrupted, GivesUpInTheEnd) {
    m_dev.transfers = std::deque<int>(100, -EINTR);
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_EQ(m_dev.calls.size(), 10U);
    EXPECT_EQ(m_errmsg,
              "0x50: read 1 byte on /dev/i2c-3: EINTR (Interrupted system call), by signals again "
              "and again");
}

TEST_F(LinuxBusInterrupted, MakesSmbusOperationsAgain) {
    m_dev.functions = SMBUS_FUNCTIONS;
    m_dev.selections = {-EINTR};
    m_dev.operations = {-EINTR};
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_EQ(m_dev.calls,
              (CFiles{"slave-force 0x50", "slave-force 0x50", "smbus read command 0x00 size 1",
                      "smbus read command 0x00 size 1"}));
}

TEST_F(LinuxBusGone, SaysSoAndLetsTheKernelHaveItsFileBack) {
    EXPECT_TRUE(Read(0, 0, 1));
    m_dev.transfers = {-ENODEV};
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_EQ(m_errmsg,
              "0x50: read 1 byte on /dev/i2c-3: ENODEV (No such device), the adapter is gone");
    EXPECT_EQ(m_dev.OpenFiles(), 0);
}

TEST_F(LinuxBusGone, SaysSoAsLongAsItIs) {
    m_dev.transfers = {-ENODEV};
    EXPECT_FALSE(Read(0, 0, 1));
    m_dev.opens = {-ENOENT, -ENOENT};
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(Read(1, 0, 1));
        EXPECT_EQ(m_errmsg,
                  "0x50: write 1 byte, read 1 byte on /dev/i2c-3: ENODEV (No such device), the "
                  "adapter is gone");
    }
    m_bus.reset();
    EXPECT_EQ(m_dev.files,
              (CFiles{"open /dev/i2c-3", "close", "open /dev/i2c-3", "open /dev/i2c-3"}));
}

TEST_F(LinuxBusGone, GoesOnWhenTheAdapterIsBack) {
    m_dev.transfers = {-ENODEV};
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_TRUE(Read(0, 0, 1));
    m_bus.reset();
    EXPECT_EQ(m_dev.files, (CFiles{"open /dev/i2c-3", "close", "open /dev/i2c-3", "close"}));
}

TEST_F(LinuxBusGone, DoesNotTakeAnotherAdapterThatGotTheNumber) {
    m_dev.transfers = {-ENODEV};
    EXPECT_FALSE(Read(0, 0, 1));
    m_fake_sysfs.AddAdapter(3, "another one");
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_EQ(m_errmsg,
              "0x50: read 1 byte on /dev/i2c-3: ENODEV (No such device), the adapter is gone");
    EXPECT_EQ(m_dev.OpenFiles(), 0);
}

TEST_F(LinuxBusGone, SelectsTheSlaveAnewWhenItIsBack) {
    m_dev.functions = SMBUS_FUNCTIONS;
    EXPECT_TRUE(Read(0, 0, 1));
    m_dev.operations = {-ENODEV};
    EXPECT_FALSE(Read(0, 0, 1));
    m_dev.calls.clear();
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_EQ(m_dev.calls, (CFiles{"slave-force 0x50", "smbus read command 0x00 size 1"}));
}

}  // namespace
