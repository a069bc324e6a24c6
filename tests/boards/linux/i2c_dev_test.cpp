// The system calls themselves, on files that are no adapters.
#include "boards/linux/i2c_dev.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace {

TEST(KernelI2cDev, TellsWhyAFileCannotBeOpened) {
    EXPECT_EQ(KernelI2cDev().Open("/nowhere/i2c-0"), -ENOENT);
}

TEST(KernelI2cDev, KeepsItsFilesFromProgramsThatAreStarted) {
    const int fd = KernelI2cDev().Open("/dev/null");
    ASSERT_GE(fd, 0);
    EXPECT_EQ(::fcntl(fd, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    KernelI2cDev().Close(fd);
    EXPECT_EQ(::fcntl(fd, F_GETFD), -1);
}

TEST(KernelI2cDev, TellsThatAFileIsNoAdapter) {
    II2cDev& dev = KernelI2cDev();
    const int fd = dev.Open("/dev/null");
    unsigned long functions = 0;
    i2c_msg msg = {};
    i2c_smbus_data data = {};
    EXPECT_EQ(dev.GetFunctions(fd, functions), -ENOTTY);
    EXPECT_EQ(dev.Transfer(fd, std::span(&msg, 1)), -ENOTTY);
    EXPECT_EQ(dev.SelectSlave(fd, 0x50, false), -ENOTTY);
    EXPECT_EQ(dev.SelectSlave(fd, 0x50, true), -ENOTTY);
    EXPECT_EQ(dev.Smbus(fd, true, 0, I2C_SMBUS_BYTE, &data), -ENOTTY);
    dev.Close(fd);
}

}  // namespace
