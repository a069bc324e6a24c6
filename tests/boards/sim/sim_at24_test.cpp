// The memories as a bus sees them.
#include "boards/sim/sim_at24.h"

#include "tests/boards/sim/sim_test.h"
#include "tests/support/thrown_text.h"

namespace {

// The address bytes of a memory position, as the part wants them.
CData Position(const sim_at24_part_t& part, uint32_t position) {
    if (part.addr_bytes == 1) {
        return {static_cast<uint8_t>(position)};
    }
    return {static_cast<uint8_t>(position >> 8), static_cast<uint8_t>(position)};
}

// The slave address behind which a position lies.
uint8_t AddrOf(const sim_at24_part_t& part, uint32_t position) {
    return static_cast<uint8_t>(0x50 + (position >> (8 * part.addr_bytes)));
}

class SimAt24 : public CSimTest {
  protected:
    CData File(CSimAt24& chip) { return BytesOf(chip.Memory().Path()); }
    void EndWriteCycle() { m_bus.WaitMs(5); }
};

TEST_F(SimAt24, ComesInTheSizesOfTheFamily) {
    struct CExpected {
        const char* name;
        uint32_t size;
        unsigned int page;
        unsigned int addr_bytes;
        unsigned int addresses;
    };
    const CExpected expected[] = {
        {"24c01", 128, 8, 1, 1},      {"24c02", 256, 8, 1, 1},        {"24c04", 512, 16, 1, 2},
        {"24c08", 1024, 16, 1, 4},    {"24c16", 2048, 16, 1, 8},      {"24c32", 4096, 32, 2, 1},
        {"24c64", 8192, 32, 2, 1},    {"24c128", 16384, 64, 2, 1},    {"24c256", 32768, 64, 2, 1},
        {"24c512", 65536, 128, 2, 1}, {"24c1024", 131072, 256, 2, 2}, {"spd", 256, 8, 1, 1},
    };
    ASSERT_EQ(SimAt24Parts().size(), std::size(expected));
    for (const CExpected& want : expected) {
        const sim_at24_part_t* part = FindSimAt24Part(want.name);
        ASSERT_NE(part, nullptr) << want.name;
        EXPECT_EQ(part->size, want.size) << want.name;
        EXPECT_EQ(part->page, want.page) << want.name;
        EXPECT_EQ(part->addr_bytes, want.addr_bytes) << want.name;
        EXPECT_EQ(part->addresses, want.addresses) << want.name;
        EXPECT_EQ(part->write_protected, std::string(want.name) == "spd");
    }
    EXPECT_EQ(FindSimAt24Part("24c00"), nullptr);
}

// One test for all parts: a byte at the first, a middle and the last position.
TEST_F(SimAt24, OfEverySizeWritesAndReadsItsWholeRange) {
    for (const sim_at24_part_t& part : SimAt24Parts()) {
        SCOPED_TRACE(part.name);
        CSimBus bus("bus", "", BUS_HZ);
        const auto path = m_folder / part.name;
        CSimAt24& chip = bus.Segment().Add(std::make_unique<CSimAt24>(
            part, 0x50, std::make_unique<CSimMemory>(path, part.size), bus.Clock()));
        chip.SetWriteProtect(false);
        for (const uint32_t position : {0U, part.size / 2 + 3, part.size - 1}) {
            CData command = Position(part, position);
            uint8_t data = 0xA5;
            CI2cXfrReq req;
            req.saddr = AddrOf(part, position);
            req.cmd_sel = part.addr_bytes;
            req.cmd = static_cast<uint16_t>(part.addr_bytes == 1 ? command[0]
                                                                 : command[0] | (command[1] << 8));
            req.data = &data;
            req.tsize = 1;
            ASSERT_TRUE(bus.I2cTrans(req)) << req.errmsg;
            EXPECT_EQ(BytesOf(path)[position], 0xA5);
            data = 0;
            req.dir = 1;
            ASSERT_TRUE(bus.I2cTrans(req)) << req.errmsg;
            EXPECT_EQ(data, 0xA5);
        }
        const CData bytes = BytesOf(path);
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 0xA5), 3);
    }
}

TEST_F(SimAt24, AnswersAtAsManyAddressesAsItHasBlocks) {
    AddAt24("24c08", 0x54);
    for (uint8_t addr = 0x50; addr < 0x58; ++addr) {
        EXPECT_EQ(Answers(addr), addr >= 0x54) << int{addr};
    }
}

TEST_F(SimAt24, TakesTheHighAddressBitsFromItsSlaveAddress) {
    CSimAt24& chip = AddAt24("24c08", 0x50);
    EXPECT_TRUE(Write(0x53, {0x10}, {0x77}));
    EXPECT_EQ(File(chip)[0x310], 0x77);
    EndWriteCycle();
    EXPECT_EQ(Read(0x53, {0x10}, 1), CData{0x77});
    EXPECT_EQ(Read(0x52, {0x10}, 1), CData{0xFF});
}

TEST_F(SimAt24, OfTwoAddressBytesTakesTheBitAboveThemFromItsSlaveAddress) {
    CSimAt24& chip = AddAt24("24c1024", 0x50);
    EXPECT_TRUE(Write(0x51, {0x12, 0x34}, {0x77}));
    EXPECT_EQ(File(chip)[0x11234], 0x77);
    EXPECT_EQ(File(chip)[0x01234], 0xFF);
    EndWriteCycle();
    EXPECT_EQ(Read(0x51, {0x12, 0x34}, 1), CData{0x77});
    EXPECT_EQ(Read(0x50, {0x12, 0x34}, 1), CData{0xFF});
}

TEST_F(SimAt24, AnswersAtNoneOfItsAddressesWhileItsWriteCycleRuns) {
    CSimAt24& chip = AddAt24("24c08", 0x50);
    EXPECT_TRUE(Write(0x51, {0x00}, {0x11}));
    for (uint8_t addr = 0x50; addr < 0x54; ++addr) {
        EXPECT_FALSE(chip.Start(addr, false)) << int{addr};
    }
}

TEST_F(SimAt24, WrapsInsideThePageOfItsBlock) {
    CSimAt24& chip = AddAt24("24c08", 0x50);
    EXPECT_TRUE(Write(0x51, {0xFE}, {1, 2, 3, 4}));
    const CData file = File(chip);
    EXPECT_EQ(CData(file.begin() + 0x1FE, file.begin() + 0x202), (CData{1, 2, 0xFF, 0xFF}));
    EXPECT_EQ(CData(file.begin() + 0x1F0, file.begin() + 0x1F3), (CData{3, 4, 0xFF}));
}

TEST_F(SimAt24, WrapsInsideThePagesOfTheLargestParts) {
    CSimAt24& half = AddAt24("24c512", 0x54);
    CSimAt24& whole = AddAt24("24c1024", 0x50);
    EXPECT_TRUE(Write(0x54, {0xFF, 0x7F}, {1, 2}));
    EXPECT_TRUE(Write(0x50, {0xFF, 0xFF}, {1, 2}));
    EXPECT_EQ(File(half)[0xFF7F], 1);
    EXPECT_EQ(File(half)[0xFF00], 2);
    EXPECT_EQ(File(whole)[0xFFFF], 1);
    EXPECT_EQ(File(whole)[0xFF00], 2);
    EXPECT_EQ(File(whole)[0x10000], 0xFF);
}

TEST_F(SimAt24, ReadsOnFromItsFirstHalfIntoItsSecond) {
    CData image(131072, 0x00);
    image[0x0FFFF] = 0x11;
    image[0x10000] = 0x22;
    image[0x1FFFF] = 0x33;
    image[0x00000] = 0x44;
    AddAt24("24c1024", 0x50, image);
    EXPECT_EQ(Read(0x50, {0xFF, 0xFF}, 2), (CData{0x11, 0x22}));
    EXPECT_EQ(Read(0x51, {0xFF, 0xFF}, 2), (CData{0x33, 0x44}));
}

TEST_F(SimAt24, IgnoresAddressBitsThatItDoesNotHave) {
    CSimAt24& small = AddAt24("24c01", 0x50);
    CSimAt24& large = AddAt24("24c32", 0x51);
    EXPECT_TRUE(Write(0x50, {0x85}, {0x11}));
    EXPECT_TRUE(Write(0x51, {0xF1, 0x23}, {0x22}));
    EXPECT_EQ(File(small)[0x05], 0x11);
    EXPECT_EQ(File(large)[0x123], 0x22);
}

TEST_F(SimAt24, SendsTheHighByteOfTwoAddressBytesFirst) {
    CSimAt24& chip = AddAt24("24c64", 0x50);
    EXPECT_TRUE(Write(0x50, {0x12, 0x34}, {0x55}));
    EXPECT_EQ(File(chip)[0x1234], 0x55);
}

TEST_F(SimAt24, WrapsInsideItsPageOnALongWrite) {
    CSimAt24& chip = AddAt24("24c02", 0x50);
    EXPECT_TRUE(Write(0x50, {0x0D}, {1, 2, 3, 4, 5}));
    const CData file = File(chip);
    EXPECT_EQ(CData(file.begin() + 8, file.begin() + 16), (CData{4, 5, 0xFF, 0xFF, 0xFF, 1, 2, 3}));
    EXPECT_EQ(file[0x10], 0xFF);
}

TEST_F(SimAt24, KeepsTheLastWriteWhenAWriteWrapsOverItself) {
    CSimAt24& chip = AddAt24("24c02", 0x50);
    EXPECT_TRUE(Write(0x50, {0x08}, Counting(19)));
    const CData file = File(chip);
    EXPECT_EQ(CData(file.begin() + 8, file.begin() + 16), (CData{16, 17, 18, 11, 12, 13, 14, 15}));
    EXPECT_EQ(file[7], 0xFF);
    EXPECT_EQ(file[16], 0xFF);
}

TEST_F(SimAt24, LeavesTheBytesOfThePageThatWereNotSent) {
    CSimAt24& chip = AddAt24("24c02", 0x50, Counting(256));
    EXPECT_TRUE(Write(0x50, {0x0A}, {0x99}));
    CData expected = Counting(256);
    expected[0x0A] = 0x99;
    EXPECT_EQ(File(chip), expected);
}

TEST_F(SimAt24, ReadsSequentially) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, {0x20}, 4), (CData{0x20, 0x21, 0x22, 0x23}));
}

TEST_F(SimAt24, RollsOverAtTheEndOfTheMemoryOnARead) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, {0xFE}, 4), (CData{0xFE, 0xFF, 0x00, 0x01}));
}

TEST_F(SimAt24, ReadsAcrossItsBlocksAndRollsOverAtTheEndOfTheLast) {
    CData image(512, 0x00);
    image[0x0FF] = 0x11;
    image[0x100] = 0x22;
    image[0x1FF] = 0x33;
    image[0x000] = 0x44;
    AddAt24("24c04", 0x50, image);
    EXPECT_EQ(Read(0x50, {0xFF}, 2), (CData{0x11, 0x22}));
    EXPECT_EQ(Read(0x51, {0xFF}, 2), (CData{0x33, 0x44}));
}

TEST_F(SimAt24, ContinuesACurrentAddressReadAfterTheLastAccess) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, 1), CData{0x00});
    EXPECT_EQ(Read(0x50, {0x40}, 2), (CData{0x40, 0x41}));
    EXPECT_EQ(Read(0x50, 2), (CData{0x42, 0x43}));
    EXPECT_EQ(Read(0x50, 1), CData{0x44});
}

TEST_F(SimAt24, RollsACurrentAddressReadOverAtTheEndOfTheMemory) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, {0xFF}, 1), CData{0xFF});
    EXPECT_EQ(Read(0x50, 1), CData{0x00});
}

TEST_F(SimAt24, LatchesTheAddressOfAWriteWithoutData) {
    CSimAt24& chip = AddAt24("24c02", 0x50, Counting(256));
    CData none;
    EXPECT_TRUE(Write(0x50, {0x60}, none));
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 0U);
    EXPECT_EQ(Read(0x50, 1), CData{0x60});
    EXPECT_EQ(File(chip), Counting(256));
}

TEST_F(SimAt24, ContinuesAReadBehindTheLastByteWritten) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_TRUE(Write(0x50, {0x20}, {0x99, 0x98}));
    EndWriteCycle();
    EXPECT_EQ(Read(0x50, 1), CData{0x22});
}

TEST_F(SimAt24, ContinuesAReadAtTheStartOfThePageAfterAWriteToItsEnd) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_TRUE(Write(0x50, {0x27}, {0x99}));
    EndWriteCycle();
    EXPECT_EQ(Read(0x50, 1), CData{0x20});
}

TEST_F(SimAt24, DoesNotMoveItsLatchByHalfAnAddress) {
    AddAt24("24c64", 0x50, CData(8192, 0x5A));
    EXPECT_EQ(Read(0x50, {0x10, 0x00}, 1), CData{0x5A});
    CSimAt24 chip(*FindSimAt24Part("24c64"), 0x50,
                  std::make_unique<CSimMemory>(m_folder / "half", 8192), m_bus.Clock());
    chip.Memory().Write(0x0100, CData{0x77});
    chip.Start(0x50, false);
    chip.WriteByte(0x01);
    chip.WriteByte(0x00);
    chip.Start(0x50, false);
    chip.WriteByte(0x0F);
    chip.Start(0x50, true);
    EXPECT_EQ(chip.ReadByte(), 0x77);
}

TEST_F(SimAt24, AcknowledgesNothingWhileItsWriteCycleRuns) {
    CSimAt24& chip = AddAt24("24c02", 0x50);
    EXPECT_TRUE(Write(0x50, {0x00}, {0x11}));
    EXPECT_FALSE(chip.Start(0x50, false));
    EXPECT_FALSE(chip.Start(0x50, true));
    m_bus.WaitMs(4);
    EXPECT_FALSE(chip.Start(0x50, false));
    m_bus.WaitMs(1);
    EXPECT_TRUE(chip.Start(0x50, false));
}

TEST_F(SimAt24, IsPolledByItsBusUntilTheWriteCycleEnds) {
    AddAt24("24c02", 0x50);
    EXPECT_TRUE(Write(0x50, {0x00}, {0x11}));
    EXPECT_EQ(Read(0x50, {0x00}, 1), CData{0x11});
    // Each poll takes a little time on the wire too, so five are enough.
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 5U);
    EXPECT_TRUE(Write(0x50, {0x08}, {0x22}));
    EXPECT_TRUE(Write(0x50, {0x10}, {0x33}));
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 10U);
}

TEST_F(SimAt24, EndsItsWriteCycleByTimeOnTheWireAlone) {
    CSimAt24& chip = AddAt24("24c02", 0x50);
    AddAt24("24c02", 0x51);
    EXPECT_TRUE(Write(0x50, {0x00}, {0x11}));
    EXPECT_FALSE(chip.Start(0x50, false));
    EXPECT_EQ(Read(0x51, 60).size(), 60U);  // 551 bits of 10 us
    EXPECT_TRUE(chip.Start(0x50, false));
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 0U);
}

TEST_F(SimAt24, LeavesOtherChipsOfTheBusAloneWhileItIsBusy) {
    AddAt24("24c02", 0x50);
    AddAt24("24c02", 0x51, Counting(256));
    EXPECT_TRUE(Write(0x50, {0x00}, {0x11}));
    EXPECT_EQ(Read(0x51, {0x30}, 1), CData{0x30});
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 0U);
}

TEST_F(SimAt24, StartsItsWriteCycleAtTheStopConditionOnly) {
    CSimAt24 chip(*FindSimAt24Part("24c02"), 0x50,
                  std::make_unique<CSimMemory>(m_folder / "chip", 256), m_bus.Clock());
    EXPECT_TRUE(chip.Start(0x50, false));
    EXPECT_TRUE(chip.WriteByte(0x10));
    EXPECT_TRUE(chip.WriteByte(0xA5));
    EXPECT_EQ(File(chip)[0x10], 0xFF);
    chip.Stop();
    EXPECT_EQ(File(chip)[0x10], 0xA5);
    EXPECT_FALSE(chip.Start(0x50, false));
}

TEST_F(SimAt24, ForgetsAPageThatEndsInARepeatedStart) {
    CSimAt24 chip(*FindSimAt24Part("24c02"), 0x50,
                  std::make_unique<CSimMemory>(m_folder / "chip", 256), m_bus.Clock());
    chip.Start(0x50, false);
    chip.WriteByte(0x10);
    chip.WriteByte(0xA5);
    EXPECT_FALSE(chip.Start(0x51, false));
    chip.Stop();
    EXPECT_EQ(File(chip), CData(256, 0xFF));
    EXPECT_TRUE(chip.Start(0x50, false));
    chip.Stop();
    EXPECT_EQ(File(chip), CData(256, 0xFF));
}

TEST_F(SimAt24, DoesNotMixAForgottenPageIntoTheNext) {
    CSimAt24 chip(*FindSimAt24Part("24c02"), 0x50,
                  std::make_unique<CSimMemory>(m_folder / "chip", 256), m_bus.Clock());
    for (const CData& bytes : {CData{0x12, 0xA5}, CData{0x21, 0x77}}) {
        chip.Start(0x50, false);
        chip.WriteByte(bytes[0]);
        chip.WriteByte(bytes[1]);
    }
    chip.Stop();
    CData expected(256, 0xFF);
    expected[0x21] = 0x77;
    EXPECT_EQ(File(chip), expected);
}

TEST_F(SimAt24, RefusesDataWhileItIsWriteProtected) {
    CSimAt24& chip = AddAt24("24c02", 0x50, Counting(256));
    chip.SetWriteProtect(true);
    EXPECT_FALSE(Write(0x50, {0x10}, {0xA5, 0xA6}));
    EXPECT_EQ(m_errmsg, "0x50 did not acknowledge data byte 0");
    EXPECT_EQ(File(chip), Counting(256));
    // No write cycle: it answers at once, at the address it took.
    EXPECT_EQ(Read(0x50, 1), CData{0x10});
    EXPECT_EQ(m_bus.Clock().WaitedMs(), 0U);

    chip.SetWriteProtect(false);
    EXPECT_TRUE(Write(0x50, {0x10}, {0xA5}));
    EXPECT_EQ(File(chip)[0x10], 0xA5);
}

TEST_F(SimAt24, IsWriteProtectedAsAnSpdMemory) {
    CSimAt24& chip = AddAt24("spd", 0x50, Counting(256));
    EXPECT_FALSE(Write(0x50, {0x10}, {0xA5}));
    EXPECT_EQ(Read(0x50, {0x10}, 2), (CData{0x10, 0x11}));
    EXPECT_EQ(File(chip), Counting(256));
}

TEST_F(SimAt24, TakesAnEmptyWriteAsAProbe) {
    AddAt24("24c02", 0x50, Counting(256));
    EXPECT_EQ(Read(0x50, {0x33}, 1), CData{0x33});
    EXPECT_TRUE(m_bus.smb_write_quick(-1, 0x50));
    EXPECT_TRUE(m_bus.smb_read_quick(-1, 0x50));
    EXPECT_EQ(Read(0x50, 1), CData{0x34});
}

TEST_F(SimAt24, RefusesAMemoryOfAnotherSize) {
    const auto path = m_folder / "small";
    EXPECT_EQ(ThrownText([&] {
                  const CSimAt24 chip(*FindSimAt24Part("24c02"), 0x50,
                                      std::make_unique<CSimMemory>(path, 128), m_bus.Clock());
              }),
              path.string() + " holds 128 bytes, but a 24c02 has 256");
}

TEST_F(SimAt24, RefusesAPartThatCannotBe) {
    sim_at24_part_t part = *FindSimAt24Part("24c02");
    const auto make = [&] {
        const CSimAt24 chip(part, 0x50, std::make_unique<CSimMemory>(m_folder / "chip", 256),
                            m_bus.Clock());
    };
    part.page = 0;
    EXPECT_EQ(ThrownText(make), "a 24c02 cannot have pages of 0 bytes");
    part.page = 512;
    EXPECT_EQ(ThrownText(make), "a 24c02 cannot have pages of 512 bytes");
    part.page = 24;
    EXPECT_EQ(ThrownText(make), "a 24c02 cannot have pages of 24 bytes");
    part.page = 8;
    part.addresses = 3;
    EXPECT_EQ(ThrownText(make), "a 24c02 cannot answer 3 addresses");
}

}  // namespace
