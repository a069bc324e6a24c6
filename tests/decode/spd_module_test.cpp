#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

TEST(SpdModule, TellsTheModuleType) {
    ExpectSpdCodes(3, "Module type",
                   {{0x00, "0x00"},
                    {0x01, "RDIMM"},
                    {0x02, "UDIMM"},
                    {0x03, "SO-DIMM"},
                    {0x04, "Micro-DIMM"},
                    {0x05, "Mini-RDIMM"},
                    {0x06, "Mini-UDIMM"},
                    {0x07, "Mini-CDIMM"},
                    {0x08, "72b-SO-UDIMM"},
                    {0x09, "72b-SO-RDIMM"},
                    {0x0A, "72b-SO-CDIMM"},
                    {0x0B, "LRDIMM"},
                    {0x0C, "16b-SO-DIMM"},
                    {0x0D, "32b-SO-DIMM"},
                    {0x0E, "0x0e"},
                    {0x12, "0x12"},
                    {0xFF, "0xff"}});
}

TEST(SpdModule, TellsTheRevision) {
    ExpectSpdCodes(1, "SPD revision",
                   {{0x10, "1.0"}, {0x13, "1.3"}, {0x00, "0.0"}, {0xFF, "0xff"}});
}

TEST(SpdModule, TellsHowManyBytesAreUsed) {
    ExpectSpdCodes(0, "SPD bytes used",
                   {{0x90, "0x0"}, {0x91, "128"}, {0x92, "176"}, {0x93, "256"}, {0x94, "0x4"}});
    ExpectSpdCodes(0, "SPD bytes total", {{0x82, "0x0"}, {0x92, "256"}, {0xA2, "0x2"}});
}

TEST(SpdModule, TellsTheDensity) {
    // One address bit more or less keeps the addresses in step.
    EXPECT_EQ(CSpdImage().Set(4, {0x00, 0x01}).Value("Device density"), "256 Mbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x01, 0x09}).Value("Device density"), "512 Mbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x02, 0x11}).Value("Device density"), "1 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x03, 0x19}).Value("Device density"), "2 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x04, 0x21}).Value("Device density"), "4 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x05, 0x22}).Value("Device density"), "8 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x06, 0x23}).Value("Device density"), "16 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x07, 0x23}).Value("Device density"), "0x7");
}

TEST(SpdModule, TellsOfAddressesThatDoNotMakeTheDensity) {
    EXPECT_EQ(CSpdImage().Set(4, {0x04, 0x19}).Value("Device density"),
              "4 Gbit, but the address bits reach 2 Gbit");
    EXPECT_EQ(CSpdImage().Set(4, {0x00, 0x23}).Value("Device density"),
              "256 Mbit, but the address bits reach 16 Gbit");
}

TEST(SpdModule, SaysNothingOfAddressesItDoesNotKnow) {
    EXPECT_EQ(SpdValueWith(5, 0x29, "Device density"), "4 Gbit");
}

TEST(SpdModule, TellsTheOrganization) {
    ExpectSpdCodes(4, "Banks",
                   {{0x04, "8"}, {0x14, "16"}, {0x24, "32"}, {0x34, "64"}, {0x44, "0x4"}});
    ExpectSpdCodes(
        5, "Row address bits",
        {{0x00, "12"}, {0x08, "13"}, {0x10, "14"}, {0x18, "15"}, {0x20, "16"}, {0x28, "0x5"}});
    ExpectSpdCodes(5, "Column address bits",
                   {{0x00, "9"}, {0x01, "10"}, {0x02, "11"}, {0x03, "12"}, {0x04, "0x4"}});
    ExpectSpdCodes(7, "Ranks", {{0x01, "1"}, {0x09, "2"}, {0x11, "3"}, {0x19, "4"}, {0x21, "0x4"}});
    ExpectSpdCodes(
        7, "Device width",
        {{0x00, "4 bits"}, {0x01, "8 bits"}, {0x02, "16 bits"}, {0x03, "32 bits"}, {0x04, "0x4"}});
    ExpectSpdCodes(
        8, "Bus width",
        {{0x00, "8 bits"}, {0x01, "16 bits"}, {0x02, "32 bits"}, {0x03, "64 bits"}, {0x04, "0x4"}});
    ExpectSpdCodes(8, "ECC", {{0x03, "none"}, {0x0B, "8 bits"}, {0x13, "0x2"}});
}

TEST(SpdModule, CalculatesTheCapacity) {
    // 4 Gbit devices of 8 bits on 64 bits, a rank
    EXPECT_EQ(CSpdImage().Value("Capacity"), "4 GiB");
    EXPECT_EQ(SpdValueWith(7, 0x11, "Capacity"), "12 GiB");
    EXPECT_EQ(SpdValueWith(7, 0x00, "Capacity"), "8 GiB");
    EXPECT_EQ(SpdValueWith(8, 0x00, "Capacity"), "512 MiB");
    // 256 Mbit
    EXPECT_EQ(SpdValueWith(4, 0x00, "Capacity"), "256 MiB");
    // 16 Gbit of 4 bits, four ranks: the most there is
    EXPECT_EQ(CSpdImage().Set(4, {0x06}).Set(7, {0x18}).Value("Capacity"), "128 GiB");
}

TEST(SpdModule, GuessesNoCapacity) {
    EXPECT_EQ(SpdValueWith(4, 0x0F, "Capacity"), "unknown");
    EXPECT_EQ(SpdValueWith(7, 0x39, "Capacity"), "unknown");
    EXPECT_EQ(SpdValueWith(7, 0x07, "Capacity"), "unknown");
    EXPECT_EQ(SpdValueWith(8, 0x07, "Capacity"), "unknown");
    EXPECT_EQ(CSpdImage().Set(7, {0x03, 0x00}).Value("Capacity"),
              "unknown: the bus is narrower than a device");
}

TEST(SpdModule, TellsTheVoltages) {
    ExpectSpdCodes(6, "Voltages",
                   {{0x00, "1.5 V"},
                    {0x01, "0x01"},
                    {0x02, "1.5 V, 1.35 V"},
                    {0x03, "1.35 V"},
                    {0x06, "1.5 V, 1.35 V, 1.25 V"},
                    {0x05, "1.25 V"}});
}

}  // namespace
