// A transfer needs no memory from the heap: on the target it runs thousands of times per
// second for hours.
#include <gtest/gtest.h>
#include <linux/i2c.h>

#include <array>

#include "boards/linux/linux_bus.h"
#include "tests/support/allocation_counter.h"

namespace {

// Succeeds at everything and notes nothing.
class CSilentDev : public II2cDev {
  public:
    explicit CSilentDev(unsigned long functions) : m_functions(functions) {}

    int Open(const std::string&) override { return 7; }
    void Close(int) override {}
    int GetFunctions(int, unsigned long& functions) override {
        functions = m_functions;
        return 0;
    }
    int Transfer(int, std::span<i2c_msg> msgs) override {
        ++m_moves;
        return static_cast<int>(msgs.size());
    }
    int SelectSlave(int, uint8_t, bool) override { return 0; }
    int Smbus(int, bool, uint8_t, uint32_t, i2c_smbus_data*) override {
        ++m_moves;
        return 0;
    }
    unsigned int Moves() const { return m_moves; }

  private:
    const unsigned long m_functions;
    unsigned int m_moves = 0;
};

// Reads and writes of `size` bytes behind a command byte.
void ExpectNoAllocation(unsigned long functions, uint8_t size) {
    CSilentDev dev(functions);
    CLinuxBus bus("i2c-3", "bus of the kernel", "/dev/i2c-3", CI2cSysfs("/nowhere"), dev);
    std::array<uint8_t, 255> data{};
    CI2cXfrReq write;
    write.saddr = 0x50;
    write.cmd_sel = 1;
    write.data = data.data();
    write.tsize = size;
    CI2cXfrReq read = write;
    read.dir = 1;

    const size_t before = g_allocations;
    const bool ok = bus.I2cTrans(write) && bus.I2cTrans(read) && bus.smb_write_quick(-1, 0x50) &&
                    bus.smb_read_byte(-1, 0x50, 1, data.data());
    const size_t after = g_allocations;

    EXPECT_TRUE(ok) << bus.GetLastError();
    EXPECT_EQ(dev.Moves(), 4U);
    EXPECT_EQ(after, before);
    EXPECT_GT(before, 0U) << "the counting does not work";
}

TEST(LinuxBusAllocation, MessagesTakeNothingFromTheHeap) {
    ExpectNoAllocation(I2C_FUNC_I2C | I2C_FUNC_SMBUS_EMUL, 255);
}

TEST(LinuxBusAllocation, SmbusOperationsTakeNothingFromTheHeap) {
    ExpectNoAllocation(I2C_FUNC_SMBUS_EMUL, 32);
}

}  // namespace
