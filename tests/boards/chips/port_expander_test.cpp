// Ports of expanders: masks, levels, and what a failed transfer leaves.
#include "boards/chips/port_expander.h"

#include "boards/sim/sim_bus.h"
#include "tests/boards/chips/register_test.h"

namespace {

using Bytes = std::vector<uint8_t>;

class PortExpander : public CRegisterTest {
  protected:
    template <class Chip>
    static int ReadPort(Chip& chip, int port) {
        uint8_t val = 0;
        return chip.ReadIoPort(port, &val) != 0 ? val : -1;
    }
};

TEST_F(PortExpander, ReadsAPortAtItsPins) {
    auto& chip = AddChip<CPortExpander>("pca9555", 0x20);
    SetOutside("pins", 0x12FE);
    EXPECT_EQ(ReadPort(chip, 0), 0xFE);
    EXPECT_EQ(ReadPort(chip, 1), 0x12);
    EXPECT_EQ(Tape(), (Names{"20 w 00 20 r fe", "20 w 01 20 r 12"}));
}

TEST_F(PortExpander, ChangesOnlyTheBitsOfTheMask) {
    auto& chip = AddChip<CPortExpander>("pca9555", 0x20);
    for (unsigned int mask = 0; mask < 256; ++mask) {
        for (const uint8_t old : Bytes{0x00, 0xFF, 0xA5}) {
            for (const uint8_t val : Bytes{0x00, 0xFF, 0x3C}) {
                ASSERT_TRUE(Write(chip, "output", old, 1));
                ASSERT_NE(chip.WriteIoPort(1, val, static_cast<uint8_t>(mask)), 0U);
                ASSERT_EQ(Read(chip, "output", 1), static_cast<int>((old & ~mask) | (val & mask)));
            }
        }
    }
    EXPECT_EQ(Read(chip, "output", 0), 0xFF);
}

TEST_F(PortExpander, WritesByReadingTheLatchAndWritingIt) {
    auto& chip = AddChip<CPortExpander>("pca9535", 0x20);
    EXPECT_EQ(chip.WriteIoPort(0, 0x00, 0x0F), 1U);
    EXPECT_EQ(Tape(), (Names{"20 w 02 20 r ff", "20 w 02 f0"}));
}

TEST_F(PortExpander, ShowsALatchOnlyWhereThePinIsAnOutput) {
    auto& chip = AddChip<CPortExpander>("pca9534", 0x20);
    ASSERT_NE(chip.WriteIoPort(0, 0x00, 0xFF), 0U);
    EXPECT_EQ(ReadPort(chip, 0), 0xFF);
    ASSERT_TRUE(Write(chip, "config", 0xF0));
    EXPECT_EQ(ReadPort(chip, 0), 0xF0);
    EXPECT_EQ(GetOutside("pins"), 0xF0);
}

TEST_F(PortExpander, RefusesAPortThatItDoesNotHave) {
    auto& wide = AddChip<CPortExpander>("pca9555", 0x20);
    auto& narrow = AddChip<CPortExpander>("pca9534", 0x21);
    auto& quasi = AddChip<CQuasiPortExpander>("pcf8574", 0x22);
    EXPECT_EQ(ReadPort(wide, 2), -1);
    EXPECT_EQ(ReadPort(wide, -1), -1);
    EXPECT_EQ(wide.WriteIoPort(2, 0, 0xFF), 0U);
    EXPECT_EQ(ReadPort(narrow, 1), -1);
    EXPECT_EQ(quasi.WriteIoPort(1, 0, 0xFF), 0U);
    EXPECT_EQ(ReadPort(quasi, 1), -1);
    EXPECT_EQ(m_log.Texts(LW_ERR_SW),
              (Names{"ports are 0 to 1\n", "ports are 0 to 1\n", "ports are 0 to 1\n",
                     "ports are 0 to 0\n", "ports are 0 to 0\n", "ports are 0 to 0\n"}));
    EXPECT_EQ(Tape(), Names{});
}

TEST_F(PortExpander, FailsWithEitherTransferOfAWriteAndLeavesTheLatch) {
    auto& chip = AddChip<CPortExpander>("pca9555", 0x20);
    for (const uint32_t nth : {1U, 2U}) {
        m_bus.Faults().FailNth(nth, SIM_NO_ACK);
        EXPECT_EQ(chip.WriteIoPort(0, 0x00, 0xFF), 0U) << nth;
        EXPECT_EQ(Read(chip, "output", 0), 0xFF) << nth;
    }
    m_bus.Faults().FailNth(1, SIM_NO_ACK);
    EXPECT_EQ(ReadPort(chip, 0), -1);
    EXPECT_EQ(m_log.Texts(LW_ERR_TEST).size(), 3U);
}

class QuasiPortExpander : public PortExpander {};

TEST_F(QuasiPortExpander, MovesOneByteWithoutAPointer) {
    auto& chip = AddChip<CQuasiPortExpander>("pcf8574", 0x21);
    EXPECT_EQ(chip.WriteIoPort(0, 0x00, 0x03), 1U);
    EXPECT_EQ(ReadPort(chip, 0), 0xFC);
    EXPECT_EQ(Tape(), (Names{"21 w fc", "21 r fc"}));
}

TEST_F(QuasiPortExpander, KeepsWhatItWroteWhereTheMaskLeavesItAlone) {
    auto& chip = AddChip<CQuasiPortExpander>("pcf8574", 0x21);
    ASSERT_NE(chip.WriteIoPort(0, 0x00, 0x01), 0U);
    // A pin that is pulled low from outside must not become an output that is low.
    SetOutside("pins", 0x7F);
    EXPECT_EQ(ReadPort(chip, 0), 0x7E);
    ASSERT_NE(chip.WriteIoPort(0, 0x00, 0x02), 0U);
    SetOutside("pins", 0xFF);
    EXPECT_EQ(ReadPort(chip, 0), 0xFC);
    EXPECT_TRUE(chip.SetClrBits(0x02, chip.getRegEntry("output"), 0, true));
    EXPECT_EQ(ReadPort(chip, 0), 0xFE);
    EXPECT_EQ(Read(chip, "output"), 0xFE);
}

TEST_F(QuasiPortExpander, ForgetsAWriteThatFailed) {
    auto& chip = AddChip<CQuasiPortExpander>("pcf8574", 0x21);
    m_bus.Faults().FailNth(1, SIM_NO_ACK);
    EXPECT_EQ(chip.WriteIoPort(0, 0x00, 0xFF), 0U);
    EXPECT_EQ(Read(chip, "output"), 0xFF);
    EXPECT_EQ(ReadPort(chip, 0), 0xFF);
}

}  // namespace
