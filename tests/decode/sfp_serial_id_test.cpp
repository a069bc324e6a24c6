// Numbers, texts and checks of the serial ID.
#include <gtest/gtest.h>

#include "decode/decode_sfp.h"
#include "tests/decode/sfp_image.h"

namespace {

TEST(SfpSerialId, OfABlankChip) {
    const CDecodedRecord decoded = DecodeSfp(std::vector<uint8_t>(SFP_SIZE, 0xFF));
    EXPECT_EQ(LinesInOne(decoded), Expected("sfp-blank.txt"));
    EXPECT_FALSE(decoded.checks_hold);
}

// Its check codes are right: the sum of zeros is zero.
TEST(SfpSerialId, OfZeros) {
    const CDecodedRecord decoded = DecodeSfp(std::vector<uint8_t>(SFP_SIZE, 0x00));
    EXPECT_EQ(LinesInOne(decoded), Expected("sfp-zeros.txt"));
    EXPECT_FALSE(decoded.checks_hold);
}

TEST(SfpSerialId, IsBlankWhateverFollows) {
    std::vector<uint8_t> image(256, 0x00);
    image[SFP_SIZE] = 0x55;
    EXPECT_EQ(ValueOf(DecodeSfp(image), "Contents"), "blank, all 0x00");
    image[SFP_SIZE - 1] = 0x55;
    EXPECT_EQ(ValueOf(DecodeSfp(image), "Contents"), "absent");
    EXPECT_TRUE(DecodeSfp(image).checks_hold);
}

TEST(SfpSerialId, WithAWrongCheckCodeIsToldAllTheSame) {
    for (const size_t byte : {size_t{0}, size_t{62}, size_t{63}}) {
        CSfpImage image;
        image.Put(20, "VENDOR").Seal();
        image.bytes[byte] ^= 0x01;
        const CDecodedRecord decoded = DecodeSfp(image.bytes);
        EXPECT_FALSE(decoded.checks_hold) << byte;
        EXPECT_NE(ValueOf(decoded, "CC_BASE").find("wrong: calculated 0x"), std::string::npos);
        EXPECT_NE(ValueOf(decoded, "CC_EXT").find(", right"), std::string::npos);
        EXPECT_EQ(ValueOf(decoded, "Vendor"), "VENDOR");
    }
}

TEST(SfpSerialId, WithAWrongExtendedCheckCodeIsToldAllTheSame) {
    for (const size_t byte : {size_t{64}, size_t{94}, size_t{95}}) {
        CSfpImage image;
        image.Put(68, "SERIAL").Seal();
        image.bytes[byte] ^= 0x01;
        const CDecodedRecord decoded = DecodeSfp(image.bytes);
        EXPECT_FALSE(decoded.checks_hold) << byte;
        EXPECT_NE(ValueOf(decoded, "CC_BASE").find(", right"), std::string::npos);
        EXPECT_NE(ValueOf(decoded, "CC_EXT").find("wrong: calculated 0x"), std::string::npos);
        EXPECT_EQ(ValueOf(decoded, "Serial number"), "SERIAL");
    }
}

TEST(SfpSerialId, ChecksNeitherVendorDataNorWhatFollows) {
    CSfpImage image;
    image.Seal().Put(96, "anything");
    EXPECT_TRUE(DecodeSfp(image.bytes).checks_hold);
}

TEST(SfpSerialId, BitRateIsInHundredsOfMegabauds) {
    EXPECT_EQ(CSfpImage().Set(12, 0).In("Nominal bit rate"), "unspecified");
    EXPECT_EQ(CSfpImage().Set(12, 1).In("Nominal bit rate"), "100 MBd");
    EXPECT_EQ(CSfpImage().Set(12, 254).In("Nominal bit rate"), "25400 MBd");
}

TEST(SfpSerialId, BitRateBeyondItsByteStandsInAnother) {
    CSfpImage image;
    image.Set(12, 0xFF).Set(66, 103).Set(67, 20);
    EXPECT_EQ(image.In("Nominal bit rate"), "25750 MBd");
    EXPECT_EQ(image.In("Upper bit rate margin"), "20 %");
    EXPECT_EQ(image.In("Lower bit rate margin"), "20 %");
    EXPECT_EQ(image.Set(66, 0).In("Nominal bit rate"), "unspecified");
}

TEST(SfpSerialId, BitRateMarginsArePercentages) {
    CSfpImage image;
    image.Set(12, 103).Set(66, 5).Set(67, 10);
    EXPECT_EQ(image.In("Upper bit rate margin"), "5 %");
    EXPECT_EQ(image.In("Lower bit rate margin"), "10 %");
    EXPECT_EQ(CSfpImage().In("Upper bit rate margin"), "unspecified");
    EXPECT_EQ(CSfpImage().In("Lower bit rate margin"), "unspecified");
}

struct CLength {
    size_t byte;
    const char* name;
    const char* one;
    const char* most;
    const char* more;
};

class SfpLength : public testing::TestWithParam<CLength> {};

TEST_P(SfpLength, HasItsUnit) {
    const auto& [byte, name, one, most, more] = GetParam();
    EXPECT_EQ(CSfpImage().Set(byte, 0).In(name), "not stated");
    EXPECT_EQ(CSfpImage().Set(byte, 1).In(name), one);
    EXPECT_EQ(CSfpImage().Set(byte, 254).In(name), most);
    EXPECT_EQ(CSfpImage().Set(byte, 255).In(name), more);
}

INSTANTIATE_TEST_SUITE_P(
    OfEachMedium, SfpLength,
    testing::Values(CLength{14, "Single-mode fibre", "1 km", "254 km", "more than 254 km"},
                    CLength{15, "Single-mode fibre, finer", "0.1 km", "25.4 km",
                            "more than 25.4 km"},
                    CLength{16, "50 um fibre, OM2", "10 m", "2540 m", "more than 2540 m"},
                    CLength{17, "62.5 um fibre, OM1", "10 m", "2540 m", "more than 2540 m"},
                    CLength{18, "50 um fibre, OM4", "10 m", "2540 m", "more than 2540 m"},
                    CLength{19, "50 um fibre, OM3", "10 m", "2540 m", "more than 2540 m"}),
    [](const auto& of) { return "Byte" + std::to_string(of.param.byte); });

TEST(SfpSerialId, WavelengthIsInNanometres) {
    EXPECT_EQ(CSfpImage().Set(60, 0x06).Set(61, 0x0E).In("Wavelength"), "1550 nm");
    EXPECT_EQ(CSfpImage().In("Wavelength"), "unspecified");
    EXPECT_EQ(CSfpImage().In("Cable complies with"), "absent");
}

TEST(SfpSerialId, DateHasALotIfThereIsOne) {
    EXPECT_EQ(CSfpImage().Put(84, "220503  ").In("Date"), "2022-05-03");
    EXPECT_EQ(CSfpImage().Put(84, "220503A7").In("Date"), "2022-05-03, lot A7");
    EXPECT_EQ(CSfpImage().Put(84, "220503\x01 ").In("Date"), "2022-05-03, lot \\x01");
}

TEST(SfpSerialId, DateThatIsNoneIsShownAsItStands) {
    EXPECT_EQ(CSfpImage().Put(84, "220231A7").In("Date"), "220231A7");
    EXPECT_EQ(CSfpImage().Put(84, "WEEK 18 ").In("Date"), "WEEK 18");
    EXPECT_EQ(CSfpImage().In("Date"), "(none)");
}

TEST(SfpSerialId, OuiOfZerosIsNone) {
    EXPECT_EQ(CSfpImage().In("Vendor OUI"), "unspecified");
    EXPECT_EQ(CSfpImage().Set(38, 0x90).Set(39, 0x65).In("Vendor OUI"), "00:90:65");
}

TEST(SfpSerialId, TextsMayHoldAnyByte) {
    EXPECT_EQ(CSfpImage().Put(20, "A\tB\xFF\xFF").In("Vendor"), "A\\x09B");
    EXPECT_EQ(CSfpImage().Put(40, "PN-1").In("Part number"), "PN-1");
    EXPECT_EQ(CSfpImage().Put(56, "A2  ").In("Revision"), "A2");
    EXPECT_EQ(CSfpImage().Put(96, "x\x80y").In("Vendor specific"), "x\\x80y");
    EXPECT_EQ(CSfpImage().In("Vendor specific"), "absent");
}

TEST(SfpSerialId, OfAnotherFormFactorIsDecodedAllTheSame) {
    CSfpImage image;
    image.Set(0, 0x99).Put(20, "VENDOR");
    EXPECT_EQ(image.In("Form factor"), "0x99");
    EXPECT_EQ(image.In("Vendor"), "VENDOR");
}

TEST(SfpSerialId, OfAnotherFormFactorIsTakenForThatOfAnSfp) {
    for (int code = 0; code <= 0xFF; ++code) {
        // Unspecified, GBIC, soldered, SFP and DWDM-SFP have this layout.
        const bool has_layout = code <= 0x03 || code == 0x0B;
        EXPECT_EQ(CSfpImage().Set(0, static_cast<uint8_t>(code)).In("Layout"),
                  has_layout ? "absent" : "taken for SFP's, which this form factor may not have")
            << code;
    }
}

}  // namespace
