// The pins of the simulated port expanders.
#include "boards/sim/sim_expander.h"

#include "tests/boards/sim/sim_test.h"

namespace {

class SimExpander : public CSimTest {
  protected:
    CSimRegisters& Add(const char* part_name, uint8_t addr = 0x20) {
        const sim_register_part_t& part = *FindSimRegisterPart(part_name);
        return m_bus.Segment().Add(part.create(part, addr));
    }
    static uint16_t Pins(CSimRegisters& chip) { return chip.GetOutside(chip.Outside().front()); }
    static void Pull(CSimRegisters& chip, uint16_t pins) {
        chip.SetOutside(chip.Outside().front(), pins);
    }
};

TEST_F(SimExpander, BeginsWithInputsThatArePulledUp) {
    EXPECT_EQ(Pins(Add("pca9534", 0x20)), 0xFF);
    EXPECT_EQ(Pins(Add("pca9535", 0x21)), 0xFFFF);
    EXPECT_EQ(Pins(Add("pca9555", 0x22)), 0xFFFF);
    for (const uint8_t addr : {uint8_t{0x20}, uint8_t{0x21}, uint8_t{0x22}}) {
        EXPECT_EQ(Read(addr, {0}, 1), CData{0xFF});
    }
}

TEST_F(SimExpander, GivesAnInputTheLevelOfTheWorldOutside) {
    CSimRegisters& chip = Add("pca9555");
    Pull(chip, 0xA55A);
    EXPECT_EQ(Read(0x20, {0}, 2), (CData{0x5A, 0xA5}));
    EXPECT_EQ(Pins(chip), 0xA55A);
}

TEST_F(SimExpander, DrivesAnOutputWithItsLatchWhateverTheWorldOutsideGives) {
    CSimRegisters& chip = Add("pca9555");
    EXPECT_TRUE(Write(0x20, {6, 0xF0, 0x0F}));
    EXPECT_TRUE(Write(0x20, {2, 0x05, 0x50}));
    EXPECT_EQ(Pins(chip), 0x5FF5);
    Pull(chip, 0x0000);
    EXPECT_EQ(Pins(chip), 0x5005);
    EXPECT_EQ(Read(0x20, {0}, 2), (CData{0x05, 0x50}));
    Pull(chip, 0xFFFF);
    EXPECT_EQ(Pins(chip), 0x5FF5);
}

TEST_F(SimExpander, InvertsWhatIsReadButNotThePin) {
    CSimRegisters& chip = Add("pca9534");
    EXPECT_TRUE(Write(0x20, {2, 0x0F}));
    Pull(chip, 0xFE);
    EXPECT_EQ(Read(0x20, {0}, 1), CData{0xF1});
    EXPECT_EQ(Pins(chip), 0xFE);
}

TEST_F(SimExpander, TakesNoInputFromTheBus) {
    CSimRegisters& chip = Add("pca9534");
    EXPECT_TRUE(Write(0x20, {0, 0x00}));
    EXPECT_EQ(Read(0x20, {0}, 1), CData{0xFF});
    EXPECT_EQ(Pins(chip), 0xFF);
}

TEST_F(SimExpander, TogglesBetweenTheTwoRegistersOfAPair) {
    Add("pca9555");
    EXPECT_TRUE(Write(0x20, {2, 0x11, 0x22, 0x33}));
    EXPECT_EQ(Read(0x20, {2}, 4), (CData{0x33, 0x22, 0x33, 0x22}));
    EXPECT_EQ(Read(0x20, {3}, 3), (CData{0x22, 0x33, 0x22}));
}

TEST_F(SimExpander, StaysAtTheOneRegisterOfAnEightBitPart) {
    Add("pca9534");
    EXPECT_TRUE(Write(0x20, {1, 0x11, 0x22}));
    EXPECT_EQ(Read(0x20, {1}, 3), (CData{0x22, 0x22, 0x22}));
    EXPECT_EQ(Read(0x20, {3}, 1), CData{0xFF});
}

TEST_F(SimExpander, HasNoPointerAsAPcf8574) {
    CSimRegisters& chip = Add("pcf8574");
    EXPECT_TRUE(Write(0x20, {0x01}));
    EXPECT_EQ(Pins(chip), 0x01);
    EXPECT_TRUE(Write(0x20, {0xFF, 0xF0}));  // the last byte counts
    EXPECT_EQ(Read(0x20, 2), (CData{0xF0, 0xF0}));
}

TEST_F(SimExpander, IsLowAsAPcf8574WhereEitherSidePullsLow) {
    CSimRegisters& chip = Add("pcf8574");
    EXPECT_TRUE(Write(0x20, {0x3C}));
    Pull(chip, 0x0F);
    EXPECT_EQ(Pins(chip), 0x0C);
    EXPECT_EQ(Read(0x20, 1), CData{0x0C});
    EXPECT_TRUE(Write(0x20, {0xFF}));
    EXPECT_EQ(Pins(chip), 0x0F);
}

}  // namespace
