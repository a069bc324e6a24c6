// Whole images, byte for byte, and the words of which they are made.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using CImage = std::vector<uint8_t>;

const char* const COMPACT_XML = R"(<?xml version="1.0"?>
<dimm_table>
  <dimm_table_version>0x00000003</dimm_table_version>
  <signature>0xA5A50001</signature>
  <dimm>
    <jedec_manufacturer_id>0x5566778899AA1234</jedec_manufacturer_id>
    <dimm_part_num>PN-EXAMPLE-01</dimm_part_num>
    <revision_start>0x0102</revision_start>
    <revision_end>0x00FF</revision_end>
    <register_set>
      <offset>0x00000010</offset>
      <value>0x0000001F</value>
      <offset>0x00000014</offset>
      <value>0x00000200</value>
    </register_set>
  </dimm>
  <dimm>
    <jedec_manufacturer_id>0xCE</jedec_manufacturer_id>
    <dimm_part_num>MT36</dimm_part_num>
    <revision_start>0</revision_start>
    <revision_end>FFFF</revision_end>
  </dimm>
</dimm_table>
)";

const CImage COMPACT_IMAGE = {
    0x49, 0xC9, 0xF3, 0x70,                          // CRC-32 of all that follows
    0x00, 0x00, 0x00, 0x03,                          // version
    0x00, 0x00, 0x00, 0x7C,                          // length: 124 bytes
    0xA5, 0xA5, 0x00, 0x01,                          // signature
    0x00, 0x00, 0x00, 0x02,                          // modules
    0x12, 0x34, 0x00, 0x00,                          // manufacturer: the low 16 bits
    'P',  'N',  '-',  'E',  'X',  'A',  'M',  'P',   // part number, padded to 32
    'L',  'E',  '-',  '0',  '1',  0x20, 0x20, 0x20,  //
    0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20,  //
    0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20,  //
    0x01, 0x02, 0x00, 0xFF,                          // revisions, first and last
    0x00, 0x00, 0x00, 0x02,                          // register pairs
    0x00, 0x00, 0x00, 0x10,                          // offset
    0x00, 0x00, 0x00, 0x1F,                          // value
    0x00, 0x00, 0x00, 0x14,                          // offset
    0x00, 0x00, 0x02, 0x00,                          // value
    0x00, 0xCE, 0x00, 0x00,                          // the second module's manufacturer
    'M',  'T',  '3',  '6',  0x20, 0x20, 0x20, 0x20,  // part number
    0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20,  //
    0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20,  //
    0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20,  //
    0x00, 0x00, 0xFF, 0xFF,                          // revisions
    0x00, 0x00, 0x00, 0x00,                          // no register pairs
};

const char* const EXTENDED_XML = R"(<?xml version="1.0"?>
<dimm_table>
  <dimm_table_version>12</dimm_table_version>
  <signature>0x56454C44</signature>
  <dimm>
    <jedec_manufacturer_id>0x123456789ABCDEF0</jedec_manufacturer_id>
    <dimm_part_num>HMA82GR7AFR8N-VK</dimm_part_num>
    <revision_start>0x0102</revision_start>
    <revision_end>0x00FF</revision_end>
    <register_set>
      <offset>0x00000110</offset>
      <value>0x80000000</value>
      <offset>0x00000114</offset>
      <value>0xFFFFFFFF</value>
    </register_set>
  </dimm>
  <dimm>
    <jedec_manufacturer_id>0xCE00000000000080</jedec_manufacturer_id>
    <dimm_part_num>M393A2K43BB1-CTD-0123456789</dimm_part_num>
    <revision_start>0x0000</revision_start>
    <revision_end>0xFFFF</revision_end>
  </dimm>
</dimm_table>
)";

const CImage EXTENDED_IMAGE = {
    0x76, 0x17, 0x97, 0x34,                          // CRC-32 of all that follows
    0x00, 0x00, 0x00, 0x12,                          // version: numbers are hexadecimal
    0x00, 0x00, 0x00, 0x6C,                          // length: 108 bytes
    0x56, 0x45, 0x4C, 0x44,                          // signature
    0x00, 0x00, 0x00, 0x02,                          // modules
    0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0,  // manufacturer
    'H',  'M',  'A',  '8',  '2',  'G',  'R',  '7',   // part number, padded to 19
    'A',  'F',  'R',  '8',  'N',  '-',  'V',  'K',   //
    0x20, 0x20, 0x20, 0x00,                          // and its end
    0x01, 0x02, 0x00, 0xFF,                          // revisions, first and last
    0x00, 0x00, 0x00, 0x02,                          // register pairs
    0x00, 0x00, 0x01, 0x10,                          // offset
    0x80, 0x00, 0x00, 0x00,                          // value
    0x00, 0x00, 0x01, 0x14,                          // offset
    0xFF, 0xFF, 0xFF, 0xFF,                          // value
    0xCE, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80,  // the second module's manufacturer
    'M',  '3',  '9',  '3',  'A',  '2',  'K',  '4',   // part number, cut to 19
    '3',  'B',  'B',  '1',  '-',  'C',  'T',  'D',   //
    '-',  '0',  '1',  0x00,                          // and its end
    0x00, 0x00, 0xFF, 0xFF,                          // revisions
    0x00, 0x00, 0x00, 0x00,                          // no register pairs
};

class ParamEepromImage : public CParamEepromTest {
  protected:
    // Programs and compares the image and the bytes behind it.
    void ExpectImage(const std::string& xml, const CImage& image) {
        EXPECT_EQ(Program(File(xml)).bytes, Bytes{SUCCESS});
        EXPECT_THAT(Memory(0, image.size()), ElementsAreArray(image));
        const size_t rest = CEepromBus::MEMORY_SIZE - image.size();
        EXPECT_TRUE(Memory(image.size(), rest) == CEepromBus::InitialBytes(image.size(), rest))
            << "bytes behind the image were touched";
    }
};

TEST_F(ParamEepromImage, IsLaidOutCompact) {
    MountParam();
    ExpectImage(COMPACT_XML, COMPACT_IMAGE);
}

TEST_F(ParamEepromImage, IsLaidOutExtendedUnderItsSignature) {
    MountParam();
    ExpectImage(EXTENDED_XML, EXTENDED_IMAGE);
}

// The reckoning that the other tests compare with.
TEST_F(ParamEepromImage, IsWhatTheTestsReckon) {
    const CTable compact = {
        .version = 3,
        .modules = {
            {.id = 0x5566778899AA1234, .rev_start = 0x0102, .regs = {{0x10, 0x1F}, {0x14, 0x200}}},
            {.id = 0xCE, .part = "MT36", .rev_end = 0xFFFF}}};
    EXPECT_EQ(ImageOf(compact), COMPACT_IMAGE);
    const CTable extended = {
        .version = 0x12,
        .signature = CTable::EXTENDED,
        .modules = {
            {.id = 0x123456789ABCDEF0,
             .part = "HMA82GR7AFR8N-VK",
             .rev_start = 0x0102,
             .regs = {{0x110, 0x80000000}, {0x114, 0xFFFFFFFF}}},
            {.id = 0xCE00000000000080, .part = "M393A2K43BB1-CTD-0123456789", .rev_end = 0xFFFF}}};
    EXPECT_EQ(ImageOf(extended), EXTENDED_IMAGE);
    EXPECT_EQ(BitwiseCrc(std::span(COMPACT_IMAGE).subspan(4)), 0x49C9F370U);
    EXPECT_EQ(BitwiseCrc(std::span(EXTENDED_IMAGE).subspan(4)), 0x76179734U);
}

TEST_F(ParamEepromImage, GoesOutHighByteFirstInWords) {
    MountParam();
    EXPECT_EQ(Program(File(COMPACT_XML)).bytes, Bytes{SUCCESS});
    for (const CEepromXfer& xfer : m_bus.Xfers()) {
        EXPECT_EQ(xfer.req.saddr, CTestEeprom::ADDR);
        EXPECT_EQ(xfer.req.cmd_sel, 2);
        EXPECT_THAT(xfer.data, ElementsAreArray(std::span(COMPACT_IMAGE).subspan(xfer.addr, 4)));
    }
}

// The order of the words on the bus.

TEST_F(ParamEepromImage, IsWrittenInOrderWhenCompact) {
    MountParam();
    EXPECT_EQ(Program(File(COMPACT_XML)).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls(), VerifiedCalls({
                           4,   8,   12, 16,                      // header
                           20,                                    // manufacturer
                           24,  28,  32, 36, 40,  44,  48,  52,   // part number
                           56,  60,                               // revisions, register pairs
                           64,  72,                               // offsets
                           68,  76,                               // values
                           80,                                    // the second module
                           84,  88,  92, 96, 100, 104, 108, 112,  //
                           116, 120,                              //
                           0,                                     // CRC
                       }));
}

TEST_F(ParamEepromImage, IsWrittenInOrderWhenExtended) {
    MountParam();
    EXPECT_EQ(Program(File(EXTENDED_XML)).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls(), VerifiedCalls({
                           4,   8,   12, 16,      // header
                           20,  24,               // manufacturer
                           28,  32,  36, 40, 44,  // part number
                           48,  52,               // revisions, register pairs
                           56,  64,               // offsets
                           60,  68,               // values
                           72,  76,               // the second module
                           80,  84,  88, 92, 96,  //
                           100, 104,              //
                           0,                     // CRC
                       }));
}

TEST_F(ParamEepromImage, WritesAllOffsetsOfAModuleBeforeItsValues) {
    MountParam();
    CTable table = {.modules = {{.regs = {{1, 2}, {3, 4}, {5, 6}}}, {.regs = {{7, 8}, {9, 10}}}}};
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    // Writes alone: every other transfer reads back.
    std::vector<unsigned int> order;
    for (const CEepromXfer& xfer : m_bus.Xfers()) {
        if (xfer.req.dir == 0) {
            order.push_back(xfer.addr);
        }
    }
    EXPECT_THAT(order, ElementsAre(4, 8, 12, 16,                                        //
                                   20, 24, 28, 32, 36, 40, 44, 48, 52, 56, 60,          //
                                   64, 72, 80, 68, 76, 84,                              //
                                   88, 92, 96, 100, 104, 108, 112, 116, 120, 124, 128,  //
                                   132, 140, 136, 144,                                  //
                                   0));
    EXPECT_EQ(order, WordOrderOf(table));
    EXPECT_EQ(Memory(0, 148), ImageOf(table));
}

TEST_F(ParamEepromImage, OpensAndClosesThePathForEveryAccess) {
    MountParamBehindSwitch();
    const CTable table = CompactTable();
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Calls(), VerifiedPathCalls(WordOrderOf(table)));
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
}

TEST_F(ParamEepromImage, GoesOutInTheTransfersThatThePartTakes) {
    MountParam(Part(8192, 1));
    const CTable table = ExtendedTable();
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
    CCalls first = Calls();
    first.resize(9);
    EXPECT_THAT(first, ElementsAre("WR 4+1", "WR 5+1", "WR 6+1", "WR 7+1", "sleep 5", "RD 4+1",
                                   "RD 5+1", "RD 6+1", "RD 7+1"));
}

TEST_F(ParamEepromImage, IsWrittenToAPartWithOneAddressByte) {
    i2c_eeprom_attr_t attr = Part(256, 16);
    attr.mem_addr_size = 1;
    MountParam(attr);
    const CTable table = CompactTable();
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
    EXPECT_EQ(Check(table).bytes, CheckAnswer(SUCCESS, 3, WordAt(ImageOf(table), 0)));
}

// Numbers that do not fit their fields.

TEST_F(ParamEepromImage, LaysTheLastRevisionOverTheFirst) {
    MountParam();
    EXPECT_EQ(Program(CTable{.modules = {{.rev_start = 0x12345, .rev_end = 0x10067}}}).bytes,
              Bytes{SUCCESS});
    EXPECT_EQ(WordAt(Memory(56, 4), 0), 0x23450000U | 0x10067U);
}

TEST_F(ParamEepromImage, KeepsSixteenBitsOfTheManufacturerWhenCompact) {
    MountParam();
    EXPECT_EQ(Program(CTable{.modules = {{.id = 0x8899AABBCCDDEEFF}}}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(WordAt(Memory(20, 4), 0), 0xEEFF0000U);
}

// The checksum.

TEST_F(ParamEepromImage, HasTheSameChecksumEveryTime) {
    MountParam();
    const CTable table = CompactTable();
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    const uint32_t first = WordAt(Memory(0, 4), 0);
    EXPECT_EQ(first, WordAt(ImageOf(table), 0));
    StoreWord(0, 0x12345678);
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(WordAt(Memory(0, 4), 0), first);
}

TEST_F(ParamEepromImage, HasAnotherChecksumUnderAnotherVersion) {
    MountParam();
    CTable table = CompactTable();
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    const uint32_t first = WordAt(Memory(0, 4), 0);
    ++table.version;
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_NE(WordAt(Memory(0, 4), 0), first);
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
}

}  // namespace
