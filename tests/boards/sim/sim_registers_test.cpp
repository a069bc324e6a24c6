// The simulated register chips on the wire: pointers, bits that can be written, and what
// reading changes.
#include "boards/sim/sim_registers.h"

#include <stdexcept>

#include "framework/diag_types.h"
#include "tests/boards/sim/sim_test.h"

namespace {

class SimRegisters : public CSimTest {
  protected:
    CSimRegisters& Add(const char* part_name, uint8_t addr = 0x48) {
        const sim_register_part_t& part = *FindSimRegisterPart(part_name);
        return m_bus.Segment().Add(part.create(part, addr));
    }
    static const sim_outside_t& Outside(const CSimRegisters& chip, const std::string& name) {
        for (const sim_outside_t& what : chip.Outside()) {
            if (name == what.name) {
                return what;
            }
        }
        throw std::runtime_error("nothing outside is called " + name);
    }
};

TEST_F(SimRegisters, AnswerTheirOwnAddressAlone) {
    Add("lm75", 0x4A);
    EXPECT_TRUE(Answers(0x4A));
    EXPECT_FALSE(Answers(0x48));
}

TEST_F(SimRegisters, KeepThePointerUntilAnotherIsWritten) {
    Add("lm75");
    EXPECT_EQ(Read(0x48, 2), (CData{0x18, 0x00}));
    EXPECT_EQ(Read(0x48, {3}, 4), (CData{0x50, 0x00, 0x50, 0x00}));
    EXPECT_EQ(Read(0x48, 2), (CData{0x50, 0x00}));
    EXPECT_TRUE(Write(0x48, {2}));
    EXPECT_EQ(Read(0x48, 1), CData{0x4B});
    // A read that was cut short begins with the high byte again.
    EXPECT_EQ(Read(0x48, 2), (CData{0x4B, 0x00}));
}

TEST_F(SimRegisters, StoreOnlyBitsThatExist) {
    Add("lm75");
    EXPECT_TRUE(Write(0x48, {2, 0xFF, 0xFF}));
    EXPECT_TRUE(Write(0x48, {1, 0xFF}));
    EXPECT_EQ(Read(0x48, {2}, 2), (CData{0xFF, 0x80}));
    EXPECT_EQ(Read(0x48, {1}, 1), CData{0x1F});
}

TEST_F(SimRegisters, AreNotChangedByHalfARegister) {
    Add("lm75");
    EXPECT_TRUE(Write(0x48, {3, 0x12}));
    EXPECT_EQ(Read(0x48, {3}, 2), (CData{0x50, 0x00}));
}

TEST_F(SimRegisters, TakeWhatIsWrittenToAReadOnlyOneWithoutEffect) {
    Add("lm75");
    EXPECT_TRUE(Write(0x48, {0, 0x55, 0x55}));
    EXPECT_EQ(Read(0x48, {0}, 2), (CData{0x18, 0x00}));
}

TEST_F(SimRegisters, FloatHighWhereNoneIs) {
    Add("lm75");
    Add("quillbank-cpld", 0x60);
    EXPECT_TRUE(Write(0x48, {9, 0x00}));
    EXPECT_EQ(Read(0x48, {9}, 2), (CData{0xFF, 0xFF}));
    EXPECT_EQ(Read(0x60, {0x0E}, 4), (CData{0xFF, 0xFF, 0x00, 0x00}));
}

TEST_F(SimRegisters, ReadTheOneShotBitOfATmp75AsZero) {
    Add("tmp75");
    EXPECT_TRUE(Write(0x48, {1, 0xE1}));
    EXPECT_EQ(Read(0x48, {1}, 1), CData{0x61});
}

TEST_F(SimRegisters, AreWrittenByTheirOtherPointerAlone) {
    Add("adt7461", 0x4C);
    EXPECT_TRUE(Write(0x4C, {0x05, 0x11}));
    EXPECT_EQ(Read(0x4C, {0x05}, 1), CData{0x55});
    EXPECT_TRUE(Write(0x4C, {0x0B, 0x11}));
    EXPECT_EQ(Read(0x4C, {0x05}, 1), CData{0x11});
    EXPECT_EQ(Read(0x4C, {0xFE}, 1), CData{0x41});
}

TEST_F(SimRegisters, ClearByReadingButNotByBeingSeenFromOutside) {
    CSimRegisters& chip = Add("adt7461", 0x4C);
    chip.SetOutside(Outside(chip, "status"), 0x50);
    EXPECT_EQ(chip.GetOutside(Outside(chip, "status")), 0x50);
    EXPECT_EQ(chip.GetOutside(Outside(chip, "status")), 0x50);
    EXPECT_EQ(Read(0x4C, {0x02}, 2), (CData{0x50, 0x00}));
    EXPECT_EQ(chip.GetOutside(Outside(chip, "status")), 0x00);
}

TEST_F(SimRegisters, ShowAWriteOnlyOneToTheOutsideAlone) {
    CSimRegisters& chip = Add("quillbank-cpld", 0x60);
    EXPECT_TRUE(Write(0x60, {0x06, 0xFC}));
    EXPECT_EQ(Read(0x60, {0x06}, 1), CData{0x00});
    EXPECT_EQ(chip.GetOutside(Outside(chip, "reset")), 0x0C);
}

TEST_F(SimRegisters, AdvanceThePointerByteByByteAndWrap) {
    Add("quillbank-cpld", 0x60);
    EXPECT_TRUE(Write(0x60, {0x10, 1, 2, 3}));
    EXPECT_EQ(Read(0x60, {0x0F}, 5), (CData{0xFF, 1, 2, 3, 0}));
    EXPECT_TRUE(Write(0x60, {0x21, 0x3F, 0x8F}));  // a low byte, and the next high one
    EXPECT_EQ(Read(0x60, {0x20}, 4), (CData{0x02, 0x3F, 0x8F, 0x08}));
    EXPECT_EQ(Read(0x60, {0xFF}, 3), (CData{0xFF, 0x51, 0x42}));
    // A read-only one and a gap are passed over.
    EXPECT_TRUE(Write(0x60, {0x02, 0x99, 0x77}));
    EXPECT_EQ(Read(0x60, {0x02}, 2), (CData{0x13, 0x77}));
    EXPECT_TRUE(Write(0x60, {0x0F, 0x99, 0x07}));
    EXPECT_EQ(Read(0x60, {0x10}, 1), CData{0x07});
}

TEST_F(SimRegisters, LetTheWorldOutsideSetWhatTheyMeasure) {
    CSimRegisters& chip = Add("tmp75");
    EXPECT_EQ(chip.GetOutside(Outside(chip, "temp")), 0x1810);
    chip.SetOutside(Outside(chip, "temp"), 0xFFF0);
    EXPECT_EQ(Read(0x48, {0}, 2), (CData{0xFF, 0xF0}));
}

class SimIna220 : public SimRegisters {
  protected:
    SimIna220() { EXPECT_TRUE(Write(ADDR, {5, 0xA0, 0x00})); }

    void Give(const char* name, int value) {
        m_chip.SetOutside(Outside(m_chip, name), static_cast<uint16_t>(value));
    }
    int Get(uint8_t pointer) {
        const CData bytes = Read(ADDR, {pointer}, 2);
        return static_cast<int16_t>(bytes.at(0) << 8 | bytes.at(1));
    }

    static constexpr uint8_t ADDR = 0x40;
    CSimRegisters& m_chip = Add("ina220", ADDR);
};

TEST_F(SimIna220, CalculatesCurrentAndPowerFromWhatItMeasures) {
    Give("shunt-voltage", 1000);
    Give("bus-voltage", 3000 << 3);
    EXPECT_EQ(Get(4), 10000);
    EXPECT_EQ(Get(3), 6000);
    Give("shunt-voltage", -1000);
    EXPECT_EQ(Get(1), -1000);
    EXPECT_EQ(Get(4), -10000);
    EXPECT_EQ(Get(3), 6000);
}

TEST_F(SimIna220, CalculatesNothingWithoutACalibration) {
    EXPECT_TRUE(Write(ADDR, {5, 0x00, 0x00}));
    EXPECT_EQ(Get(4), 0);
    EXPECT_EQ(Get(3), 0);
}

TEST_F(SimIna220, TellsWhenAResultDoesNotFit) {
    Give("shunt-voltage", 32000);
    Give("bus-voltage", 1000 << 3);
    EXPECT_EQ(Get(4), 32767);
    EXPECT_EQ(Get(2), 1000 << 3 | 1);
    Give("shunt-voltage", 100);
    EXPECT_EQ(Get(2), 1000 << 3);
}

TEST_F(SimIna220, ClearsTheReadyBitWhenPowerIsReadUntilTheNextConversion) {
    constexpr int READY = 0x5DC2;
    EXPECT_EQ(Get(2), READY);
    Get(4);
    EXPECT_EQ(Get(2), READY);
    Get(3);
    EXPECT_EQ(Get(2), READY & ~2);
    EXPECT_EQ(Get(2), READY);
}

TEST_F(SimIna220, ConvertsOnceForEachTriggerWhenItIsTriggered) {
    EXPECT_TRUE(Write(ADDR, {0, 0x39, 0x9B}));
    EXPECT_EQ(Get(2) & 2, 0);
    EXPECT_EQ(Get(2) & 2, 2);
    Get(3);
    EXPECT_EQ(Get(2) & 2, 0);
    EXPECT_EQ(Get(2) & 2, 0);
    EXPECT_TRUE(Write(ADDR, {0, 0x39, 0x9B}));
    EXPECT_EQ(Get(2) & 2, 0);
    EXPECT_EQ(Get(2) & 2, 2);
}

TEST_F(SimIna220, KeepsTheReadyBitWhenItIsTurnedOff) {
    for (const uint8_t mode : {uint8_t{0x98}, uint8_t{0x9C}}) {
        EXPECT_TRUE(Write(ADDR, {0, 0x39, mode}));
        EXPECT_EQ(Get(2) & 2, 2);
    }
    Get(3);
    EXPECT_EQ(Get(2) & 2, 0);
    EXPECT_EQ(Get(2) & 2, 0);
}

TEST_F(SimIna220, ForgetsItsSettingsAtAReset) {
    EXPECT_TRUE(Write(ADDR, {0, 0xFF, 0xFF}));
    EXPECT_EQ(Get(0), 0x399F);
    EXPECT_EQ(Get(5), 0);
    EXPECT_EQ(Get(1), 2500);
}

}  // namespace
