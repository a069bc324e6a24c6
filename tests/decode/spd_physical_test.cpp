#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

constexpr int RDIMM = 1;
constexpr int UDIMM = 2;
constexpr int MINI_CDIMM = 7;
constexpr int LRDIMM = 11;

// A module of that type, with these bytes from byte 63 on.
CSpdImage Module(int type, std::initializer_list<int> section) {
    return CSpdImage().Set(3, {type}).Set(63, section);
}

TEST(SpdPhysical, TellsTheHeight) {
    ExpectSpdCodes(60, "Height",
                   {{0x00, "up to 15 mm"},
                    {0x01, "15 to 16 mm"},
                    {0x0F, "29 to 30 mm"},
                    {0x1E, "44 to 45 mm"},
                    {0x1F, "more than 45 mm"},
                    {0x2F, "29 to 30 mm"}});
}

TEST(SpdPhysical, TellsTheThickness) {
    ExpectSpdCodes(61, "Front thickness",
                   {{0xF0, "up to 1 mm"},
                    {0xF1, "1 to 2 mm"},
                    {0x0E, "14 to 15 mm"},
                    {0x0F, "more than 15 mm"}});
    ExpectSpdCodes(61, "Back thickness",
                   {{0x0F, "up to 1 mm"},
                    {0x1F, "1 to 2 mm"},
                    {0xE0, "14 to 15 mm"},
                    {0xF0, "more than 15 mm"}});
}

TEST(SpdPhysical, TellsTheWidthByTheModuleType) {
    ExpectSpdCodes(3, "Width",
                   {{0x01, "133.35 mm"},
                    {0x02, "133.35 mm"},
                    {0x03, "67.6 mm"},
                    {0x04, "not defined"},
                    {0x05, "82.0 mm"},
                    {0x06, "82.0 mm"},
                    {0x07, "67.6 mm"},
                    {0x08, "67.6 mm"},
                    {0x09, "67.6 mm"},
                    {0x0A, "67.6 mm"},
                    {0x0B, "133.35 mm"},
                    {0x0C, "67.6 mm"},
                    {0x0D, "67.6 mm"},
                    {0x0E, "absent"}});
}

TEST(SpdPhysical, TellsTheReferenceRawCard) {
    ExpectSpdCodes(62, "Reference raw card",
                   {{0x00, "A revision 0"},
                    {0x07, "H revision 0"},
                    {0x08, "J revision 0"},
                    {0x13, "Y revision 0"},
                    {0x14, "AA revision 0"},
                    {0x1E, "AL revision 0"},
                    {0x1F, "ZZ (no reference design)"},
                    {0x80, "AM revision 0"},
                    {0x88, "AY revision 0"},
                    {0x89, "BA revision 0"},
                    {0x9E, "CB revision 0"},
                    {0x9F, "ZZ (no reference design)"},
                    {0x24, "E revision 1"},
                    {0x64, "E revision 3"}});
    EXPECT_EQ(CSpdImage().Set(60, {0x2F, 0x11, 0x64}).Value("Reference raw card"),
              "E revision 3, extension 1");
}

TEST(SpdPhysical, TellsTheAddressMappingOfUnbufferedModules) {
    ExpectSpdCodes(63, "Rank 1 address mapping", {{0x00, "standard"}, {0x01, "mirrored"}});
    for (const int type : {2, 3, 4, 6, 8, 12, 13}) {
        EXPECT_EQ(Module(type, {1}).Value("Rank 1 address mapping"), "mirrored") << type;
    }
    for (const int type : {0, 1, 5, 7, 9, 10, 11, 14, 0x12}) {
        EXPECT_EQ(Module(type, {1}).Value("Rank 1 address mapping"), "absent") << type;
    }
}

TEST(SpdPhysical, TellsTheRegistersOfRegisteredModules) {
    const auto registers = [](int code) { return Module(RDIMM, {code}).Value("Registers"); };
    EXPECT_EQ(registers(0), "0x0");
    EXPECT_EQ(registers(1), "1");
    EXPECT_EQ(registers(2), "2");
    EXPECT_EQ(registers(3), "4");
    for (const int type : {1, 5, 9}) {
        EXPECT_EQ(Module(type, {1}).Value("Registers"), "1") << type;
    }
    for (const int type : {0, 2, 3, 4, 6, 7, 8, 10, 11, 12, 13, 14, 0x11}) {
        EXPECT_EQ(Module(type, {1}).Value("Registers"), "absent") << type;
    }
}

TEST(SpdPhysical, TellsTheRowsOfDram) {
    const auto rows = [](int type, int code) { return Module(type, {code}).Value("Rows of DRAM"); };
    EXPECT_EQ(rows(RDIMM, 0x0), "0x0");
    EXPECT_EQ(rows(RDIMM, 0x4), "1");
    EXPECT_EQ(rows(RDIMM, 0x8), "2");
    EXPECT_EQ(rows(RDIMM, 0xC), "4");
    EXPECT_EQ(rows(LRDIMM, 0x0), "0x0");
    EXPECT_EQ(rows(LRDIMM, 0x4), "1");
    EXPECT_EQ(rows(LRDIMM, 0x8), "2");
    EXPECT_EQ(rows(LRDIMM, 0xC), "0x3");
    EXPECT_EQ(rows(UDIMM, 0x4), "absent");
    EXPECT_EQ(rows(MINI_CDIMM, 0x4), "absent");
}

TEST(SpdPhysical, TellsTheHeatSpreader) {
    EXPECT_EQ(Module(RDIMM, {0x80, 0x00}).Value("Heat spreader"), "no");
    EXPECT_EQ(Module(RDIMM, {0x00, 0x80}).Value("Heat spreader"), "yes");
    EXPECT_EQ(Module(RDIMM, {0x00, 0x85}).Value("Heat spreader"), "yes, characteristics 0x05");
    EXPECT_EQ(Module(LRDIMM, {0x00, 0x80}).Value("Heat spreader"), "no");
    EXPECT_EQ(Module(LRDIMM, {0x80, 0x00}).Value("Heat spreader"), "yes");
}

TEST(SpdPhysical, TellsTheRegister) {
    const CSpdImage image = Module(
        RDIMM, {5, 0, 0x04, 0xB3, 0x03, 0x00, 0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE});
    EXPECT_EQ(image.Value("Register maker"), "Inphi (bank 5, code 0xb3)");
    EXPECT_EQ(image.Value("Register revision"), "3");
    EXPECT_EQ(image.Value("Register type"), "SSTE32882");
    EXPECT_EQ(image.Value("Control words RC0-RC15"),
              "0x0 0x1 0x2 0x3 0x4 0x5 0x6 0x7 0x8 0x9 0xa 0xb 0xc 0xd 0xe 0xf");
    EXPECT_EQ(Module(RDIMM, {5, 0, 0, 0, 0, 1}).Value("Register type"), "0x1");
}

TEST(SpdPhysical, TellsTheRevisionOfTheRegister) {
    const auto revision = [](int code) {
        return Module(RDIMM, {5, 0, 0, 0, code}).Value("Register revision");
    };
    EXPECT_EQ(revision(0x00), "0");
    EXPECT_EQ(revision(0x09), "9");
    EXPECT_EQ(revision(0x10), "1.0");
    EXPECT_EQ(revision(0x31), "3.1");
    EXPECT_EQ(revision(0xA1), "A1");
    EXPECT_EQ(revision(0xF9), "F9");
    EXPECT_EQ(revision(0x1A), "0x1a");
    EXPECT_EQ(revision(0xFF), "0xff");
}

TEST(SpdPhysical, TellsTheBufferOfLoadReducedModules) {
    const CSpdImage image = Module(LRDIMM, {0x31, 0xB1, 0x80, 0xB3, 0x12, 0x34});
    EXPECT_EQ(image.Value("Rank mirroring"), "odd ranks");
    EXPECT_EQ(image.Value("Rank numbering"), "even only");
    EXPECT_EQ(image.Value("Buffer orientation"), "horizontal");
    EXPECT_EQ(image.Value("Buffer maker"), "IDT (bank 1, code 0xb3)");
    EXPECT_EQ(image.Value("Buffer revision"), "B1");
    EXPECT_TRUE(image.Value("Bytes 67-116").starts_with("12 34 00 00 "));
    EXPECT_EQ(image.Value("Register maker"), "absent");
    const CSpdImage other = Module(LRDIMM, {0x02});
    EXPECT_EQ(other.Value("Rank mirroring"), "0x2");
    EXPECT_EQ(other.Value("Rank numbering"), "contiguous");
    EXPECT_EQ(other.Value("Buffer orientation"), "vertical");
}

TEST(SpdPhysical, ShowsBytesItDoesNotKnowAsNumbers) {
    EXPECT_TRUE(Module(MINI_CDIMM, {0xAB}).Value("Bytes 63-116").starts_with("ab 00 "));
    EXPECT_TRUE(Module(UDIMM, {0x00, 0xAB}).Value("Bytes 64-116").starts_with("ab 00 "));
    EXPECT_TRUE(Module(0, {}).Value("Bytes 60-116").starts_with("0f 11 03 00 "));
    CSpdImage registered = Module(RDIMM, {}).Set(77, {0xAB}).Set(116, {0xCD});
    EXPECT_TRUE(registered.Value("Bytes 77-116").starts_with("ab 00 "));
    EXPECT_TRUE(registered.Value("Bytes 77-116").ends_with(" 00 cd"));
}

TEST(SpdPhysical, ShowsNoBytesOfUnusedSpace) {
    for (const CDecodedField& field : CSpdImage().Decode().fields) {
        EXPECT_FALSE(field.name.starts_with("Bytes")) << field.name;
    }
}

TEST(SpdPhysical, KnowsNothingOfAnUnknownModuleType) {
    const CSpdImage image = Module(0x0E, {});
    for (const char* name : {"Height", "Width", "Front thickness", "Reference raw card"}) {
        EXPECT_EQ(image.Value(name), "absent") << name;
    }
}

}  // namespace
