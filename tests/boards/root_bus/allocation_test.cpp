// A transfer needs no memory from the heap: on the target it runs thousands of
// times per second for hours.
#include <gtest/gtest.h>

#include <array>

#include "boards/root_bus/root_bus.h"
#include "tests/support/allocation_counter.h"

namespace {

class CSilentBus : public CRootBus {
  public:
    CSilentBus() : CRootBus("i2c-0", "bus without chips") {}
    uint32_t GetMaxTransSize() override { return 255; }
    unsigned int Transfers() const { return m_transfers; }

  protected:
    CI2cResult Transfer(std::span<const CI2cMsg>, bool) override {
        ++m_transfers;
        return CI2cResult::Ok();
    }

  private:
    unsigned int m_transfers = 0;
};

TEST(RootBusAllocation, SuccessfulTransfersTakeNothingFromTheHeap) {
    CSilentBus bus;
    std::array<uint8_t, 255> data{};
    CI2cXfrReq write;
    write.saddr = 0x50;
    write.cmd_sel = 2;
    write.data = data.data();
    write.tsize = 255;
    write.wpec_en = 1;
    CI2cXfrReq read = write;
    read.dir = 1;
    uint16_t word = 0;

    const size_t before = g_allocations;
    const bool ok = bus.I2cTrans(write) && bus.I2cTrans(read) &&
                    bus.smb_read_word(-1, 0x50, 1, &word) &&
                    bus.smb_block_write(-1, 0x50, 1, 32, data.data());
    const size_t after = g_allocations;

    EXPECT_TRUE(ok);
    EXPECT_EQ(bus.Transfers(), 4U);
    EXPECT_EQ(after, before);
    EXPECT_GT(before, 0U) << "the counting does not work";
}

TEST(RootBusAllocation, WritesInPiecesTakeNothingFromTheHeap) {
    CSilentBus bus;
    bus.DeclareEeprom({0x50, 8, 1, 8});
    std::array<uint8_t, 255> data{};
    CI2cXfrReq write;
    write.saddr = 0x50;
    write.cmd_sel = 1;
    write.cmd = 0x81;
    write.data = data.data();
    write.tsize = 255;
    CI2cXfrReq read = write;
    read.dir = 1;

    const size_t before = g_allocations;
    const bool ok = bus.I2cTrans(write) && bus.I2cTrans(read);
    const size_t after = g_allocations;

    EXPECT_TRUE(ok);
    EXPECT_EQ(bus.Transfers(), 32U + 1U);
    EXPECT_EQ(after, before);
}

}  // namespace
