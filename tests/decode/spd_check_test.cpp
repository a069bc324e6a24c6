// The checksum, and what comes of an SPD that is not of DDR3, or of nothing.
#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

constexpr std::string_view NOT_DECODED = "not that of DDR3: the rest is not decoded";
constexpr std::string_view NEVERTHELESS =
    "taken for DDR3's: with a wrong CRC the memory type may be wrong too";

TEST(SpdCheck, LeavesOutWhatDiffersFromModuleToModule) {
    const CSpdImage image = CSpdImage().Set(0, {0x92}).Seal(117).Set(122, {1, 2, 3, 4});
    EXPECT_TRUE(image.Decode().checks_hold);
    EXPECT_EQ(image.Value("CRC coverage"), "bytes 0 to 116");
    EXPECT_TRUE(image.Value("CRC").ends_with(", right"));
}

TEST(SpdCheck, CoversTheSerialNumberWhenByte0SaysSo) {
    CSpdImage image;
    image.Set(0, {0x12}).Seal(126);
    EXPECT_TRUE(image.Decode().checks_hold);
    EXPECT_EQ(image.Value("CRC coverage"), "bytes 0 to 125");
    image.Set(125, {0x77});
    EXPECT_FALSE(image.Decode().checks_hold);
}

TEST(SpdCheck, CalculatesTheCrcOfTheStandard) {
    // XMODEM's check value: the digits 1 to 9, before them zeros that leave it alone
    CSpdImage image;
    for (size_t at = 0; at < 126; ++at) {
        image.Set(at, {0});
    }
    image.SetText(117, "123456789").Set(126, {0xC3, 0x31});
    EXPECT_EQ(image.Value("CRC"), "0x31c3, right");
}

TEST(SpdCheck, TellsBothCrcsAndDecodesTheRest) {
    const CSpdImage image = CSpdImage().Set(126, {0x34, 0x12});
    const CDecodedRecord decoded = image.Decode();
    EXPECT_FALSE(decoded.checks_hold);
    EXPECT_EQ(ValueOf(decoded, "CRC"), "0x1234, wrong: calculated 0xd9d2");
    EXPECT_EQ(ValueOf(decoded, "Capacity"), "4 GiB");
    EXPECT_EQ(ValueOf(decoded, "Part number"), "QBU-4G72-1R8-1600");
    EXPECT_EQ(ValueOf(decoded, "Layout"), "absent");
}

TEST(SpdCheck, NamesTheMemoryType) {
    const std::initializer_list<CSpdCode> types = {{0x00, "0x00"},
                                                   {0x01, "fast page mode DRAM"},
                                                   {0x02, "EDO DRAM"},
                                                   {0x03, "pipelined nibble DRAM"},
                                                   {0x04, "SDRAM"},
                                                   {0x05, "ROM"},
                                                   {0x06, "DDR SGRAM"},
                                                   {0x07, "DDR SDRAM"},
                                                   {0x08, "DDR2 SDRAM"},
                                                   {0x09, "DDR2 SDRAM FB-DIMM"},
                                                   {0x0A, "DDR2 SDRAM FB-DIMM probe"},
                                                   {0x0C, "DDR4 SDRAM"},
                                                   {0x0D, "0x0d"},
                                                   {0x0E, "DDR4E SDRAM"},
                                                   {0x0F, "LPDDR3 SDRAM"},
                                                   {0x10, "LPDDR4 SDRAM"},
                                                   {0x11, "LPDDR4X SDRAM"},
                                                   {0x12, "DDR5 SDRAM"},
                                                   {0x13, "LPDDR5 SDRAM"},
                                                   {0x14, "0x14"},
                                                   {0xFF, "0xff"}};
    for (const CSpdCode& type : types) {
        const CDecodedRecord decoded = CSpdImage().Set(2, {type.byte}).Seal().Decode();
        EXPECT_EQ(ValueOf(decoded, "Memory type"), type.value);
        EXPECT_EQ(ValueOf(decoded, "Layout"), NOT_DECODED);
    }
}

TEST(SpdCheck, LeavesOtherLayoutsAlone) {
    const CDecodedRecord decoded = CSpdImage().Set(2, {0x0C}).Seal().Decode();
    ASSERT_EQ(decoded.fields.size(), 4U);
    EXPECT_EQ(decoded.fields[0].name, "Memory type");
    EXPECT_EQ(decoded.fields[1].name, "Layout");
    EXPECT_EQ(decoded.fields[2].name, "CRC coverage");
    EXPECT_EQ(decoded.fields[3].name, "CRC");
    EXPECT_TRUE(decoded.fields[3].value.ends_with(", right"));
    EXPECT_FALSE(decoded.checks_hold);
}

TEST(SpdCheck, DoesNotTrustTheMemoryTypeOfAWrongCrc) {
    const CDecodedRecord decoded = CSpdImage().Set(2, {0x0C}).Decode();
    EXPECT_FALSE(decoded.checks_hold);
    EXPECT_EQ(ValueOf(decoded, "Memory type"), "DDR4 SDRAM");
    EXPECT_EQ(ValueOf(decoded, "Layout"), NEVERTHELESS);
    EXPECT_EQ(ValueOf(decoded, "Capacity"), "4 GiB");
}

TEST(SpdCheck, ShowsABlankChipAsNumbers) {
    const CDecodedRecord decoded = DecodeSpd(std::vector<uint8_t>(SPD_SIZE, 0xFF));
    EXPECT_FALSE(decoded.checks_hold);
    ASSERT_FALSE(decoded.fields.empty());
    EXPECT_EQ(decoded.fields.front().name, "Contents");
    EXPECT_EQ(decoded.fields.front().value, "blank, all 0xff");
    EXPECT_EQ(ValueOf(decoded, "Memory type"), "0xff");
    EXPECT_EQ(ValueOf(decoded, "Layout"), NEVERTHELESS);
    EXPECT_EQ(ValueOf(decoded, "Module type"), "0xff");
    EXPECT_EQ(ValueOf(decoded, "Capacity"), "unknown");
    EXPECT_EQ(ValueOf(decoded, "Module maker"), "(none)");
    EXPECT_EQ(ValueOf(decoded, "Part number"), "(none)");
}

TEST(SpdCheck, DoesNotHoldOfAZeroedChip) {
    // Its CRC is right: that of zeros is zero.
    const CDecodedRecord decoded = DecodeSpd(std::vector<uint8_t>(SPD_SIZE, 0));
    EXPECT_FALSE(decoded.checks_hold);
    EXPECT_TRUE(ValueOf(decoded, "CRC").ends_with(", right"));
    ASSERT_FALSE(decoded.fields.empty());
    EXPECT_EQ(decoded.fields.front().name, "Contents");
    EXPECT_EQ(decoded.fields.front().value, "blank, all 0x00");
    EXPECT_EQ(ValueOf(decoded, "Memory type"), "0x00");
    EXPECT_EQ(ValueOf(decoded, "Layout"), NOT_DECODED);
}

}  // namespace
