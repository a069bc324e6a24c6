// The register chips of the board on the wire, byte by byte.
#include "boards/chips/register_chip.h"

#include <algorithm>
#include <cstdio>

#include "tests/boards/chips/register_test.h"

namespace {

class RegisterChip : public CRegisterTest {};

TEST_F(RegisterChip, ReadsBehindItsPointerTheMostSignificantByteFirst) {
    CRegisterChip& chip = AddChip("lm75", 0x48);
    SetOutside("temp", 0xE700);
    EXPECT_EQ(Read(chip, "temp"), 0xE700);
    EXPECT_EQ(Read(chip, "tos"), 0x5000);
    EXPECT_EQ(Read(chip, "conf"), 0x00);
    EXPECT_EQ(Tape(), (Names{"48 w 00 48 r e7 00", "48 w 03 48 r 50 00", "48 w 01 48 r 00"}));
}

TEST_F(RegisterChip, WritesPointerAndBytesInOneTransfer) {
    CRegisterChip& chip = AddChip("lm75", 0x48);
    EXPECT_TRUE(Write(chip, "thyst", 0x1280));
    EXPECT_TRUE(Write(chip, "conf", 0x01));
    EXPECT_EQ(Tape(), (Names{"48 w 02 12 80", "48 w 01 01"}));
    EXPECT_EQ(Read(chip, "thyst"), 0x1280);
}

TEST_F(RegisterChip, WritesByAnotherPointerThanItReadsWhereTheChipWantsIt) {
    CRegisterChip& chip = AddChip("adt7461", 0x4C);
    EXPECT_TRUE(Write(chip, "local-high", 70));
    EXPECT_EQ(Read(chip, "local-high"), 70);
    EXPECT_EQ(Tape(), (Names{"4c w 0b 46", "4c w 05 4c r 46"}));
}

TEST_F(RegisterChip, FindsTheElementsOfAnArrayByItsStride) {
    CRegisterChip& chip = AddChip("quillbank-cpld", 0x60);
    EXPECT_TRUE(Write(chip, "led", 0x05, 7));
    EXPECT_TRUE(Write(chip, "lane", 0x8312, 3));
    EXPECT_EQ(Read(chip, "lane", 3), 0x8312);
    EXPECT_EQ(Read(chip, "lane", 2), 0x0208);
    EXPECT_EQ(Tape(),
              (Names{"60 w 17 05", "60 w 26 83 12", "60 w 26 60 r 83 12", "60 w 24 60 r 02 08"}));
}

TEST_F(RegisterChip, RefusesToReadWhatIsWriteOnlyWithoutATransfer) {
    CRegisterChip& chip = AddChip("quillbank-cpld", 0x60);
    EXPECT_EQ(Read(chip, "reset"), -1);
    EXPECT_EQ(m_log.Texts(LW_ERR_SW), Names{"register reset cannot be read\n"});
    EXPECT_EQ(Tape(), Names{});
}

TEST_F(RegisterChip, RefusesToWriteWhatIsReadOnlyOrClearsByReading) {
    CRegisterChip& chip = AddChip("quillbank-cpld", 0x60);
    EXPECT_FALSE(Write(chip, "id", 1));
    EXPECT_FALSE(Write(chip, "events", 0));
    EXPECT_EQ(m_log.Texts(LW_ERR_SW),
              (Names{"register id cannot be written\n", "register events cannot be written\n"}));
    EXPECT_EQ(Tape(), Names{});
}

TEST_F(RegisterChip, TellsOfATransferThatFailed) {
    CRegisterChip& chip = AddChip("lm75", 0x48);
    m_bus.Faults().Nack(0x48);
    EXPECT_EQ(Read(chip, "temp"), -1);
    EXPECT_FALSE(Write(chip, "conf", 1));
    EXPECT_EQ(m_log.Texts(LW_ERR_TEST),
              (Names{"register temp cannot be read: no acknowledge from 0x48\n",
                     "register conf cannot be written: no acknowledge from 0x48\n"}));
}

TEST_F(RegisterChip, SetsAndClearsBitsByReadingAndWritingOneElement) {
    CRegisterChip& chip = AddChip("quillbank-cpld", 0x60);
    EXPECT_TRUE(chip.SetClrBits(0x8000, chip.getRegEntry("lane"), 1, true));
    EXPECT_TRUE(chip.SetClrBits(0x0208, chip.getRegEntry("lane"), 1, false));
    EXPECT_EQ(Tape(), (Names{"60 w 22 60 r 02 08", "60 w 22 82 08", "60 w 22 60 r 82 08",
                             "60 w 22 80 00"}));
    EXPECT_EQ(Read(chip, "lane", 0), 0x0208);
}

// Each table of the board against the simulated chip's own.
class RegisterTable : public CRegisterTest, public testing::WithParamInterface<const char*> {
  protected:
    static bool IsReadable(const diag_reg_st& reg) { return reg.access != DIAG_REGACC_WO; }
    static uint32_t Count(const diag_reg_st& reg) { return reg.num_regs > 1 ? reg.num_regs : 1; }
    // What the world outside gives is not of the chip.
    bool IsGiven(const diag_reg_st& reg) const {
        return reg.access == DIAG_REGACC_RO && reg.init_data == 0;
    }
};

TEST_P(RegisterTable, HasTheValuesAfterPowerOnThatTheChipHas) {
    CRegisterChip& chip = AddChip(GetParam(), 0x30);
    for (const diag_reg_st& reg : FindRegisterPart(GetParam())->registers) {
        for (uint32_t index = 0; IsReadable(reg) && !IsGiven(reg) && index < Count(reg); ++index) {
            // A clock goes on while it is read.
            if (std::string(GetParam()) != "ds3232" || std::string(reg.name) != "seconds") {
                EXPECT_EQ(Read(chip, reg.name, index), reg.init_data) << reg.name << index;
            }
        }
    }
}

TEST_P(RegisterTable, NamesExactlyTheBitsThatCanBeWritten) {
    for (const diag_reg_st& reg : FindRegisterPart(GetParam())->registers) {
        // Bits of their own: those that start something, and flags that only clear.
        const std::string name = std::string(GetParam()) + " " + reg.name;
        const bool special = name == "tmp75 conf" || name == "ds3232 control" ||
                             name == "ds3232 status" || name == "ina220 config" ||
                             name == "pcf8574 output" || name == "ds3232 seconds";
        if (reg.access != DIAG_REGACC_RW || special) {
            continue;
        }
        CTapedSimBus bus("bus", "", 100'000);
        const sim_register_part_t& sim = *FindSimRegisterPart(GetParam());
        bus.Segment().Add(sim.create(sim, 0x30));
        CRegisterChip chip(*FindRegisterPart(GetParam()), "chip", "", {&bus, -1, 0x30});
        for (uint32_t index = 0; index < Count(reg); ++index) {
            ASSERT_TRUE(Write(chip, reg.name, 0, index));
            EXPECT_EQ(Read(chip, reg.name, index), 0) << reg.name;
            ASSERT_TRUE(Write(chip, reg.name, ~uint64_t{0}, index));
            EXPECT_EQ(Read(chip, reg.name, index), reg.mask) << reg.name;
        }
    }
}

TEST_P(RegisterTable, IsDumpedWithoutReadingWhatAReadWouldChange) {
    CRegisterChip& chip = AddChip(GetParam(), 0x30);
    EXPECT_TRUE(chip.dumpRegs(LW_PRINT, ""));
    const Names tape = Tape();
    size_t reads = 0;
    for (const diag_reg_st& reg : FindRegisterPart(GetParam())->registers) {
        char begin[16];
        std::snprintf(begin, sizeof begin, "30 w %02x 30 r", static_cast<unsigned>(reg.offset));
        const bool safe = reg.access == DIAG_REGACC_RO || reg.access == DIAG_REGACC_RW;
        reads += safe ? Count(reg) : 0;
        for (const std::string& entry : tape) {
            EXPECT_FALSE(!safe && entry.starts_with(begin)) << reg.name << ": " << entry;
        }
    }
    EXPECT_EQ(tape.size(), reads);
}

TEST_P(RegisterTable, HasNamesThatCanBeTypedAndFitTheDump) {
    std::vector<std::string> names;
    for (const diag_reg_st& reg : FindRegisterPart(GetParam())->registers) {
        const std::string name = reg.name;
        EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"),
                  std::string::npos)
            << name;
        EXPECT_LE(name.size(), 16U) << name;
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 0) << name << " twice";
        EXPECT_STRNE(reg.desc, "") << name;
        EXPECT_EQ(reg.init_data & ~reg.mask, 0U) << name;
        names.push_back(name);
    }
}

std::vector<const char*> PartNames() {
    std::vector<const char*> names;
    for (const register_part_t* part : RegisterParts()) {
        names.push_back(part->name.data());
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(Parts, RegisterTable, testing::ValuesIn(PartNames()),
                         [](const auto& part) {
                             std::string name = part.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(RegisterParts, AreAllSimulated) {
    ASSERT_EQ(RegisterParts().size(), 10U);
    for (const register_part_t* part : RegisterParts()) {
        EXPECT_EQ(FindRegisterPart(part->name), part);
        EXPECT_NE(FindSimRegisterPart(part->name), nullptr) << part->name;
    }
    EXPECT_EQ(SimRegisterParts().size(), RegisterParts().size());
    EXPECT_EQ(FindRegisterPart("lm76"), nullptr);
    EXPECT_EQ(FindSimRegisterPart("lm76"), nullptr);
}

}  // namespace
