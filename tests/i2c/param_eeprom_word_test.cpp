// What the commands share, called directly: words in both byte orders, the copy
// of the image, and the lines that show memory.
#include <gmock/gmock.h>

#include "i2c/param_eeprom_cmd.h"
#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// A command without a body of its own.
class CBareCmd : public CParamEepromCmd {
  public:
    CBareCmd(bool swapped, CDiagParamEepromDevice* dev)
        : CParamEepromCmd("bare", "nothing of its own", swapped, dev) {}
    void Invoke(CInMsg&, COutMsg&) override {}

    using CParamEepromCmd::checkDimmTableLength;
    using CParamEepromCmd::checkifCardA;
    using CParamEepromCmd::checkifCardSupported;
    using CParamEepromCmd::dumpArray;
    using CParamEepromCmd::eeprom_read32;
    using CParamEepromCmd::eeprom_write32;
    using CParamEepromCmd::eeprom_write32_verify;
    using CParamEepromCmd::getCardType;
    using CParamEepromCmd::hex_dump;
    using CParamEepromCmd::m_dimmtable;
    using CParamEepromCmd::m_dimmtbl_arr;
    using CParamEepromCmd::m_offset;
    using CParamEepromCmd::placeDimmTblInArray;
    using CParamEepromCmd::setDimmTableLength;
    using CParamEepromCmd::setDimmTableSz;
    using CParamEepromCmd::setNumEntriesHeader;
};

class ParamEepromWord : public CParamEepromTest {
  protected:
    CBareCmd& Bare(bool swapped = false) {
        auto* command = new CBareCmd(swapped, &Device());
        Device().AddChild(command, CDiagObj::NO_SORT);
        return *command;
    }
    static void MakeRoom(CBareCmd& command, uint32_t size) { command.m_dimmtbl_arr.resize(size); }
};

// Normal words.

TEST_F(ParamEepromWord, IsStoredHighByteFirst) {
    MountParam();
    const CBareCmd& command = Bare();
    command.eeprom_write32(0x10, 0x01020304);
    EXPECT_EQ(Memory(0x10, 4), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(command.eeprom_read32(0x10), 0x01020304U);
    EXPECT_THAT(Calls(), ElementsAre("WR 16+4", "RD 16+4"));
}

TEST_F(ParamEepromWord, IsAllOnesWhenItCannotBeRead) {
    MountParam();
    m_bus.FailWith("no ack");
    EXPECT_EQ(Bare().eeprom_read32(0xABC), 0xFFFFFFFFU);
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory read failed (addr=02748 nBytes=4): no ack",
                            "Error during EEPROM read! offset = 0xabc "));
}

TEST_F(ParamEepromWord, IsNotTakenForVerifiedWhenItDiffers) {
    MountParam();
    CBareCmd& command = Bare();
    MakeRoom(command, 32);
    m_bus.AfterTransfer([](size_t, const CI2cXfrReq& req) { req.data[0] = 0xEE; });
    EXPECT_EQ(ThrownText([&] { command.eeprom_write32_verify(4, 0x01020304); }),
              "Verify failed: expected 0x01020304, read 0xEE020304\n");
    EXPECT_EQ(command.m_dimmtbl_arr, Bytes(32));
}

TEST_F(ParamEepromWord, IsKeptInTheCopyWhenVerified) {
    MountParam();
    CBareCmd& command = Bare();
    MakeRoom(command, 12);
    command.eeprom_write32_verify(4, 0x01020304);
    EXPECT_EQ(command.m_dimmtbl_arr, (Bytes{0, 0, 0, 0, 1, 2, 3, 4, 0, 0, 0, 0}));
    EXPECT_EQ(Calls(), VerifiedCalls({4}));
}

// Byte-swapped words.

TEST_F(ParamEepromWord, IsStoredLowByteFirstWhenSwapped) {
    MountParamBehindSwitch();
    const CBareCmd& command = Bare(true);
    command.eeprom_write32(0x10, 0x01020304);
    EXPECT_EQ(Memory(0x10, 4), (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(command.eeprom_read32(0x10), 0x01020304U);
    // The path is somebody else's business.
    EXPECT_THAT(Calls(), ElementsAre("WR 16+4", "RD 16+4"));
}

TEST_F(ParamEepromWord, TellsOfFailuresWhenSwapped) {
    MountParam();
    const CBareCmd& command = Bare(true);
    m_bus.FailWith("no ack");
    command.eeprom_write32(0x10, 1);
    EXPECT_EQ(command.eeprom_read32(0x10), 0xFFFFFFFFU);
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory write failed (addr=00016 nBytes=4): no ack",
                            "Error during EEPROM write! offset = 0x10 ",
                            "ERROR: Memory read failed (addr=00016 nBytes=4): no ack",
                            "Error during EEPROM read! offset = 0x10 "));
}

// The copy of the image.

TEST_F(ParamEepromWord, IsPlacedAtTheWordBoundaryBeforeItsOffset) {
    MountParam();
    CBareCmd& command = Bare();
    for (uint16_t offset = 4; offset < 8; ++offset) {
        command.m_dimmtbl_arr.assign(12, 0xAA);
        command.placeDimmTblInArray(offset, 0x01020304);
        EXPECT_EQ(command.m_dimmtbl_arr,
                  (Bytes{0xAA, 0xAA, 0xAA, 0xAA, 1, 2, 3, 4, 0xAA, 0xAA, 0xAA, 0xAA}));
    }
}

TEST_F(ParamEepromWord, IsPlacedAtTheEndsOfTheCopy) {
    MountParam();
    CBareCmd& command = Bare();
    MakeRoom(command, 65536);
    command.placeDimmTblInArray(0, 0x01020304);
    command.placeDimmTblInArray(0xFFFF, 0x05060708);
    EXPECT_EQ(WordAt(command.m_dimmtbl_arr, 0), 0x01020304U);
    EXPECT_EQ(WordAt(command.m_dimmtbl_arr, 65532), 0x05060708U);
}

TEST_F(ParamEepromWord, IsNotPlacedBehindTheCopy) {
    MountParam();
    CBareCmd& command = Bare();
    for (const uint16_t offset : std::vector<uint16_t>{12, 15, 16, 0xFFFC, 0xFFFF}) {
        command.m_dimmtbl_arr.assign(12, 0xAA);
        EXPECT_THAT(ThrownText([&] { command.placeDimmTblInArray(offset, 0x01020304); }),
                    Not(IsEmpty()))
            << offset;
        EXPECT_EQ(command.m_dimmtbl_arr, Bytes(12, 0xAA));
    }
}

// The header.

TEST_F(ParamEepromWord, OfTheLengthIsWrittenAndRead) {
    MountParam();
    CBareCmd& command = Bare();
    command.m_dimmtable = std::make_unique<DimmTable>();
    command.m_dimmtable->dimmtable_size = 0x7C;
    MakeRoom(command, 0x7C);
    command.setDimmTableLength();
    EXPECT_EQ(command.m_offset, 12);
    EXPECT_EQ(WordAt(Memory(8, 4), 0), 0x7CU);
    EXPECT_EQ(Log(), (CLines{Progress("Dimm length : 0x0000007C\n"),
                             Progress("Setting Dimm length in header : DONE\n")}));
    Forget();
    StoreWord(8, 0xABCD);
    EXPECT_EQ(command.checkDimmTableLength(), 0xABCDU);
    EXPECT_EQ(WordAt(command.m_dimmtbl_arr, 8), 0xABCDU);
    EXPECT_EQ(Log(), (CLines{Progress("Dimm length : 0x0000ABCD\n"),
                             Progress("Getting Dimm length in header : DONE\n")}));
}

TEST_F(ParamEepromWord, OfTheNumberOfModulesIsWritten) {
    MountParam();
    CBareCmd& command = Bare();
    command.m_dimmtable = std::make_unique<DimmTable>();
    command.m_dimmtable->num_Entries = 5;
    MakeRoom(command, 64);
    command.setNumEntriesHeader();
    EXPECT_EQ(command.m_offset, 20);
    EXPECT_EQ(WordAt(Memory(16, 4), 0), 5U);
    EXPECT_EQ(Log(), CLines{Progress("Setting number of entries in header : DONE\n")});
}

TEST_F(ParamEepromWord, OfRegistersBeginWhereTheLayoutPutsThem) {
    MountParam();
    const CBareCmd& command = Bare();
    DimmTable table;
    table.num_Entries = 2;
    table.entry.resize(4);
    table.entry[0].Register_Array = {{1, 2}, {3, 4}};
    command.setDimmTableSz(&table);
    EXPECT_THAT(table.Regs_offsets, ElementsAre(64, 124, 168));
    EXPECT_EQ(table.dimmtable_size, 124U);
    EXPECT_EQ(table.entry[0].num_Reg, 2U);
    EXPECT_EQ(table.entry[1].num_Reg, 0U);
    EXPECT_EQ(Log(), (CLines{Progress("Num of entries = 2\n"), Progress("num of Reg offsets = 2\n"),
                             Progress("num of Reg offsets = 0\n"),
                             Progress("size of dimmtable = 124\n")}));
}

TEST_F(ParamEepromWord, OfRegistersBeginEarlierInTheExtendedLayout) {
    MountParam();
    const CBareCmd& command = Bare();
    DimmTable table;
    table.num_Entries = 1;
    table.signature = CTable::EXTENDED;
    table.entry.resize(2);
    command.setDimmTableSz(&table);
    EXPECT_THAT(table.Regs_offsets, ElementsAre(56, 92));
    EXPECT_EQ(table.dimmtable_size, 56U);
}

// Lines that show memory.

TEST_F(ParamEepromWord, IsDumpedSixteenBytesALineAndTheRestByteByByte) {
    MountParam();
    Bytes bytes;
    for (uint8_t i = 0; i < 34; ++i) {
        bytes.push_back(static_cast<uint8_t>(0xF0 + i));
    }
    Bare().hex_dump(bytes.data(), 34);
    CFmtString first;
    first.printf(
        "%p: 0xf0 0xf1 0xf2 0xf3 0xf4 0xf5 0xf6 0xf7  0xf8 0xf9 0xfa 0xfb 0xfc 0xfd 0xfe "
        "0xff \n",
        static_cast<void*>(bytes.data()));
    CFmtString second;
    second.printf(
        "%p: 0x00 0x01 0x02 0x03 0x04 0x05 0x06 0x07  0x08 0x09 0x0a 0x0b 0x0c 0x0d "
        "0x0e 0x0f \n",
        static_cast<void*>(&bytes[16]));
    CFmtString third;
    third.printf("%p: 0x10\n", static_cast<void*>(&bytes[32]));
    CFmtString fourth;
    fourth.printf("%p: 0x11\n", static_cast<void*>(&bytes[33]));
    EXPECT_EQ(Log(), (CLines{{0xA5, first.c_str()},
                             {0xA5, second.c_str()},
                             Progress(third.c_str()),
                             Progress(fourth.c_str())}));
}

TEST_F(ParamEepromWord, IsDumpedInLinesAloneOrNotAtAll) {
    MountParam();
    const CBareCmd& command = Bare();
    const Bytes bytes(16, 0x5A);
    command.hex_dump(bytes.data(), 0);
    EXPECT_THAT(Log(), IsEmpty());
    command.hex_dump(bytes.data(), 16);
    ASSERT_EQ(Log().size(), 1U);
    EXPECT_EQ(Log()[0].first, 0xA5U);
    m_log.Clear();
    command.hex_dump(bytes.data(), 15);
    EXPECT_EQ(m_log.Texts(0xA1).size(), 15U);
    EXPECT_THAT(m_log.Texts(0xA5), IsEmpty());
}

TEST_F(ParamEepromWord, IsListedWithItsIndex) {
    MountParam();
    CBareCmd& command = Bare();
    command.m_dimmtbl_arr = {0x12, 0x34, 0x56, 0x78, 0, 0, 0, 0, 0x89, 0xAB, 0xCD, 0xEF};
    command.dumpArray();
    EXPECT_EQ(Log(), (CLines{Failure(" 0 , 0x12345678\n "), Failure(" 1 , 0x00000000\n "),
                             Failure(" 2 , 0x89ABCDEF\n ")}));
}

// The card.

TEST_F(ParamEepromWord, KnowsItsCard) {
    MountParam();
    const CBareCmd& command = Bare();
    EXPECT_EQ(command.getCardType(), "Quillbank");
    EXPECT_TRUE(command.checkifCardA("Quillbank"));
    EXPECT_EQ(Log(), CLines{Progress("Card Type = Quillbank\n")});
    m_log.Clear();
    for (const char* other : {"Orvalis", "quillbank", "Quillbank ", ""}) {
        EXPECT_FALSE(command.checkifCardA(other));
    }
    EXPECT_THAT(Log(), IsEmpty());
}

// Every card differs from one of the names at least.
TEST_F(ParamEepromWord, TakesEveryCard) {
    class COtherCard : public CBareCmd {
      public:
        COtherCard(CDiagParamEepromDevice* dev, std::string card)
            : CBareCmd(false, dev), m_card(std::move(card)) {}
        std::string getCardType() const override { return m_card; }

      private:
        std::string m_card;
    };
    MountParam();
    for (const char* card : {"Quillbank", "Orvalis", "Damaskel", "Copperjaw", ""}) {
        const COtherCard command(&Device(), card);
        EXPECT_NO_THROW(command.checkifCardSupported()) << card;
    }
    EXPECT_THAT(m_log.Texts(0x10), IsEmpty());
}

}  // namespace
