// Reading and writing an EEPROM behind multiplexers, with the host's log as
// diagsh starts with it, needs no memory from the heap for a transfer: a test
// makes thousands of them per second for hours.
#include <gtest/gtest.h>

#include <vector>

#include "bench/eeprom_board.h"
#include "tests/support/allocation_counter.h"

namespace {

class EepromAllocation : public testing::Test {
  protected:
    // Of work on an open path, which has been done before.
    template <class Work>
    size_t AllocationsOf(Work work) {
        EXPECT_TRUE(m_board.Eeprom().EnablePath());
        EXPECT_TRUE(work());
        const size_t before = g_allocations;
        const bool ok = work();
        const size_t after = g_allocations;
        EXPECT_TRUE(ok);
        EXPECT_GT(before, 0U) << "the counting does not work";
        EXPECT_TRUE(m_board.Eeprom().ClearPath());
        return after - before;
    }
    size_t AllocationsOfReading(uint16_t size) {
        return AllocationsOf([&] { return m_board.Eeprom().ReadMemory(0, m_bytes.data(), size); });
    }

    CEepromBoard m_board;
    std::vector<byte_t> m_bytes = std::vector<byte_t>(CEepromBoard::SIZE);
};

TEST_F(EepromAllocation, IsNoneForTheTransfersOfARead) {
    const uint64_t before = m_board.Bus().GetTransfers();
    EXPECT_EQ(AllocationsOfReading(CEepromBoard::SIZE), 0U);
    EXPECT_GE(m_board.Bus().GetTransfers() - before, 2U * 256U);
}

TEST_F(EepromAllocation, IsNoneForTransfersWhoseTraceIsLonger) {
    EXPECT_EQ(AllocationsOfReading(4), 0U);
}

TEST_F(EepromAllocation, IsNoneForAWriteThatIsCutIntoPages) {
    EXPECT_EQ(AllocationsOf([&] { return m_board.Eeprom().WriteMemory(21, m_bytes.data(), 1000); }),
              0U);
    EXPECT_GT(m_board.Bus().GetPolls(), 0U);
}

}  // namespace
