// What a module measures. Thresholds are at 0, values at 96 of A2h, in the same order.
#include <gtest/gtest.h>

#include "tests/decode/sfp_image.h"

namespace {

// Of the diagnostic monitoring type.
constexpr uint8_t INTERNAL = 0x68;
constexpr uint8_t EXTERNAL = 0x58;

CSfpImage Internal() {
    return CSfpImage().WithDiagnostics(INTERNAL);
}

// Slopes of 1, offsets of 0, and a received power that is the raw one.
CSfpImage External() {
    CSfpImage image = CSfpImage().WithDiagnostics(EXTERNAL);
    image.Word(68, 0x3F80);
    for (const size_t slope : {76, 80, 84, 88}) {
        image.Word(slope, 0x0100);
    }
    return image;
}

TEST(SfpDiagnostics, MayBeMissing) {
    for (const uint8_t type : {uint8_t{0x00}, uint8_t{0x2C}}) {
        const CSfpImage image = CSfpImage().WithDiagnostics(type);
        EXPECT_EQ(image.In("Diagnostics"), "none");
        EXPECT_EQ(image.In("Temperature"), "absent");
    }
}

TEST(SfpDiagnostics, MayBeOutsideTheImage) {
    CSfpImage image = Internal();
    image.bytes.resize(511);
    EXPECT_EQ(image.In("Diagnostics"), "not read: the 256 bytes of address A2h are missing");
    EXPECT_EQ(image.In("Temperature"), "absent");
}

TEST(SfpDiagnostics, BehindAnAddressChangeAreNotDecoded) {
    const CSfpImage image = CSfpImage().WithDiagnostics(INTERNAL | 0x04);
    EXPECT_EQ(image.In("Diagnostics"), "not decoded: the module changes its address to show them");
    EXPECT_EQ(image.In("Temperature"), "absent");
}

TEST(SfpDiagnostics, SayHowTheyAreCalibrated) {
    EXPECT_EQ(Internal().In("Calibration"), "internal");
    EXPECT_EQ(External().In("Calibration"), "external");
    EXPECT_EQ(CSfpImage().WithDiagnostics(0x48).In("Calibration"), "not stated, taken as internal");
    EXPECT_EQ(CSfpImage().WithDiagnostics(0x78).In("Calibration"),
              "internal and external, taken as internal");
}

TEST(SfpDiagnostics, CalibratedInternallyNeedNoConstants) {
    for (const uint8_t type : {uint8_t{0x68}, uint8_t{0x48}, uint8_t{0x78}}) {
        CSfpImage image = CSfpImage().WithDiagnostics(type);
        image.Word(84, 0x0300).Word(86, 0x1000).Word(96, 0x1900).Word(104, 10000);
        EXPECT_EQ(image.In("Temperature"), "25.00 C");
        EXPECT_EQ(image.In("RX power"), "1.0000 mW (0.00 dBm)");
    }
}

TEST(SfpDiagnostics, TemperatureIsSigned) {
    EXPECT_EQ(Internal().Word(96, 0x0000).In("Temperature"), "0.00 C");
    EXPECT_EQ(Internal().Word(96, 0x7FFF).In("Temperature"), "128.00 C");
    EXPECT_EQ(Internal().Word(96, 0xFFFF).In("Temperature"), "0.00 C");
    EXPECT_EQ(Internal().Word(96, 0xFF80).In("Temperature"), "-0.50 C");
    EXPECT_EQ(Internal().Word(96, 0xE740).In("Temperature"), "-24.75 C");
    EXPECT_EQ(Internal().Word(96, 0x8000).In("Temperature"), "-128.00 C");
}

TEST(SfpDiagnostics, VoltageAndBiasAreNot) {
    EXPECT_EQ(Internal().Word(98, 0xFFFF).In("Supply voltage"), "6.5535 V");
    EXPECT_EQ(Internal().Word(98, 33000).In("Supply voltage"), "3.3000 V");
    EXPECT_EQ(Internal().Word(100, 0xFFFF).In("TX bias"), "131.070 mA");
    EXPECT_EQ(Internal().Word(100, 1).In("TX bias"), "0.002 mA");
}

TEST(SfpDiagnostics, PowerIsInMilliwattsAndDecibels) {
    EXPECT_EQ(Internal().Word(102, 5012).In("TX power"), "0.5012 mW (-3.00 dBm)");
    EXPECT_EQ(Internal().Word(104, 1).In("RX power"), "0.0001 mW (-40.00 dBm)");
    EXPECT_EQ(Internal().Word(104, 0xFFFF).In("RX power"), "6.5535 mW (8.16 dBm)");
}

TEST(SfpDiagnostics, DarknessHasNoDecibels) {
    EXPECT_EQ(Internal().In("TX power"), "0.0000 mW (-inf dBm)");
    EXPECT_EQ(Internal().In("RX power"), "0.0000 mW (-inf dBm)");
}

TEST(SfpDiagnostics, ReceivedPowerIsAverageOrAmplitude) {
    EXPECT_EQ(CSfpImage().WithDiagnostics(0x68).In("RX power measured as"), "average");
    EXPECT_EQ(CSfpImage().WithDiagnostics(0x60).In("RX power measured as"), "OMA");
}

TEST(SfpDiagnostics, HaveLimitsForEachValue) {
    CSfpImage image = Internal();
    // High alarm, low alarm, high warning, low warning.
    image.Word(0, 0x5000).Word(2, 0xF600).Word(4, 0x4600).Word(6, 0xFF00);
    image.Word(8, 36000).Word(10, 30000).Word(12, 35000).Word(14, 31000);
    image.Word(16, 5000).Word(18, 500).Word(20, 4500).Word(22, 1000);
    image.Word(24, 10000).Word(26, 1000).Word(28, 5012).Word(30, 1995);
    image.Word(32, 12589).Word(34, 100).Word(36, 10000).Word(38, 0);
    EXPECT_EQ(image.In("Temperature alarm"), "below -10.00 C, above 80.00 C");
    EXPECT_EQ(image.In("Temperature warning"), "below -1.00 C, above 70.00 C");
    EXPECT_EQ(image.In("Supply voltage alarm"), "below 3.0000 V, above 3.6000 V");
    EXPECT_EQ(image.In("Supply voltage warning"), "below 3.1000 V, above 3.5000 V");
    EXPECT_EQ(image.In("TX bias alarm"), "below 1.000 mA, above 10.000 mA");
    EXPECT_EQ(image.In("TX bias warning"), "below 2.000 mA, above 9.000 mA");
    EXPECT_EQ(image.In("TX power alarm"),
              "below 0.1000 mW (-10.00 dBm), above 1.0000 mW (0.00 dBm)");
    EXPECT_EQ(image.In("TX power warning"),
              "below 0.1995 mW (-7.00 dBm), above 0.5012 mW (-3.00 dBm)");
    EXPECT_EQ(image.In("RX power alarm"),
              "below 0.0100 mW (-20.00 dBm), above 1.2589 mW (1.00 dBm)");
    EXPECT_EQ(image.In("RX power warning"),
              "below 0.0000 mW (-inf dBm), above 1.0000 mW (0.00 dBm)");
}

TEST(SfpDiagnostics, OfACooledLaserHaveMore) {
    CSfpImage image = Internal();
    image.Set(64, 0x04);
    image.Word(40, 0x3700).Word(42, 0xFB00).Word(44, 0x3200).Word(46, 0x0000);
    image.Word(48, 2000).Word(50, 0xF830).Word(52, 1500).Word(54, 0xFA24);
    image.Word(106, 0x1E80).Word(108, 0xFF83);
    EXPECT_EQ(image.In("Laser temperature"), "30.50 C");
    EXPECT_EQ(image.In("Laser temperature alarm"), "below -5.00 C, above 55.00 C");
    EXPECT_EQ(image.In("Laser temperature warning"), "below 0.00 C, above 50.00 C");
    EXPECT_EQ(image.In("TEC current"), "-12.5 mA");
    EXPECT_EQ(image.In("TEC current alarm"), "below -200.0 mA, above 200.0 mA");
    EXPECT_EQ(image.In("TEC current warning"), "below -150.0 mA, above 150.0 mA");
}

TEST(SfpDiagnostics, OfATunableLaserMayBeAWavelength) {
    CSfpImage image = Internal();
    image.Set(64, 0x04).Set(65, 0x40).Word(106, 0x1E80);
    EXPECT_EQ(image.In("Laser temperature"), "0x1e80");
}

TEST(SfpDiagnostics, OfAnUncooledLaserHaveNotMore) {
    for (const char* name :
         {"Laser temperature", "Laser temperature alarm", "Laser temperature warning",
          "TEC current", "TEC current alarm", "TEC current warning"}) {
        EXPECT_EQ(Internal().Word(106, 0x1E80).In(name), "absent");
    }
}

// temperature: 1.5 * 0x1000 + 0x0180 = 0x1980 in 1/256 C
// voltage: 0.5 * 60000 - 1000 = 29000 in 100 uV
// bias: 2 * 1500 + 250 = 3250 in 2 uA
// TX power: 0.25 * 20000 - 12 = 4988 in 0.1 uW
TEST(SfpDiagnostics, CalibratedExternallyAreSlopesAndOffsets) {
    CSfpImage image = External();
    image.Word(84, 0x0180).Word(86, 0x0180).Word(96, 0x1000);
    image.Word(88, 0x0080).Word(90, static_cast<uint16_t>(-1000)).Word(98, 60000);
    image.Word(76, 0x0200).Word(78, 250).Word(100, 1500);
    image.Word(80, 0x0040).Word(82, static_cast<uint16_t>(-12)).Word(102, 20000);
    EXPECT_EQ(image.In("Temperature"), "25.50 C");
    EXPECT_EQ(image.In("Supply voltage"), "2.9000 V");
    EXPECT_EQ(image.In("TX bias"), "6.500 mA");
    EXPECT_EQ(image.In("TX power"), "0.4988 mW (-3.02 dBm)");
}

TEST(SfpDiagnostics, CalibratedExternallyMayBeNegative) {
    CSfpImage image = External();
    // 2 * -0x0A00 - 0x0100 = -0x1500
    image.Word(84, 0x0200).Word(86, 0xFF00).Word(96, 0xF600);
    image.Word(78, static_cast<uint16_t>(-5));
    image.Word(82, static_cast<uint16_t>(-20));
    EXPECT_EQ(image.In("Temperature"), "-21.00 C");
    EXPECT_EQ(image.In("TX bias"), "-0.010 mA");
}

TEST(SfpDiagnostics, HaveNoPowerBelowNothing) {
    CSfpImage image = External();
    image.Word(82, static_cast<uint16_t>(-20)).Word(72, 0xC1A0);  // -20
    EXPECT_EQ(image.In("TX power"), "out of range");
    EXPECT_EQ(image.In("RX power"), "out of range");
    EXPECT_EQ(image.In("RX power alarm"), "below out of range, above out of range");
    image.Word(102, 20).Word(104, 20);
    EXPECT_EQ(image.In("TX power"), "0.0000 mW (-inf dBm)");
    EXPECT_EQ(image.In("RX power"), "0.0000 mW (-inf dBm)");
}

TEST(SfpDiagnostics, TakeLessThanTheirLastDigitForDarkness) {
    EXPECT_EQ(External().Word(72, 0xBE80).In("RX power"), "0.0000 mW (-inf dBm)");  // -0.25
    EXPECT_EQ(External().Word(72, 0xBF40).In("RX power"), "out of range");          // -0.75
}

// At a raw power of 100: 2^-20 * 100^4 + 2^-10 * 100^3 - 0.25 * 100^2 + 20 * 100 + 50
// = 95.367... + 976.562... - 2500 + 2000 + 50 = 621.930
TEST(SfpDiagnostics, CalibratedExternallyHaveReceivedPowerAsAPolynomial) {
    CSfpImage image = External();
    image.Word(56, 0x3580).Word(60, 0x3A80).Word(64, 0xBE80).Word(68, 0x41A0).Word(72, 0x4248);
    image.Word(104, 100);
    EXPECT_EQ(image.In("RX power"), "0.0622 mW (-12.06 dBm)");
    EXPECT_EQ(image.Word(104, 0).In("RX power"), "0.0050 mW (-23.01 dBm)");
}

TEST(SfpDiagnostics, CalibratedExternallyHaveLimitsSoToo) {
    CSfpImage image = External();
    image.Word(84, 0x0200).Word(86, 0x0100).Word(0, 0x2000).Word(2, 0xFB00);
    image.Word(68, 0x4000).Word(32, 5000).Word(34, 50);
    EXPECT_EQ(image.In("Temperature alarm"), "below -9.00 C, above 65.00 C");
    EXPECT_EQ(image.In("RX power alarm"),
              "below 0.0100 mW (-20.00 dBm), above 1.0000 mW (0.00 dBm)");
}

TEST(SfpDiagnostics, OutOfRangeAreToldSo) {
    for (const uint16_t word : {uint16_t{0x7F80},     // infinity
                                uint16_t{0xFF80},     // -infinity
                                uint16_t{0x7FC0},     // no number
                                uint16_t{0x7F00}}) {  // 1.7e38
        EXPECT_EQ(External().Word(68, word).Word(104, 1).In("RX power"), "out of range");
        EXPECT_EQ(External().Word(56, word).Word(104, 0xFFFF).In("RX power"), "out of range");
    }
    // No number at the raw power of nothing either.
    EXPECT_EQ(External().Word(68, 0x7F80).In("RX power"), "out of range");
    EXPECT_EQ(External().Word(88, 0xFFFF).Word(98, 0xFFFF).In("Supply voltage"), "out of range");
    EXPECT_EQ(External().Word(84, 0xFFFF).Word(96, 0x8000).In("Temperature"), "out of range");
}

struct CFlag {
    uint16_t word;
    const char* name;
};

class SfpFlag : public testing::TestWithParam<CFlag> {};

TEST_P(SfpFlag, HasItsNameAsAlarmAndAsWarning) {
    const auto& [word, name] = GetParam();
    const CSfpImage alarm = Internal().Word(112, word);
    EXPECT_EQ(alarm.In("Alarms"), name);
    EXPECT_EQ(alarm.In("Warnings"), "none");
    const CSfpImage warning = Internal().Word(116, word);
    EXPECT_EQ(warning.In("Alarms"), "none");
    EXPECT_EQ(warning.In("Warnings"), name);
}

INSTANTIATE_TEST_SUITE_P(
    Of, SfpFlag,
    testing::Values(CFlag{0x8000, "temperature high"}, CFlag{0x4000, "temperature low"},
                    CFlag{0x2000, "supply voltage high"}, CFlag{0x1000, "supply voltage low"},
                    CFlag{0x0800, "TX bias high"}, CFlag{0x0400, "TX bias low"},
                    CFlag{0x0200, "TX power high"}, CFlag{0x0100, "TX power low"},
                    CFlag{0x0080, "RX power high"}, CFlag{0x0040, "RX power low"},
                    CFlag{0x0020, "laser temperature high"}, CFlag{0x0010, "laser temperature low"},
                    CFlag{0x0008, "TEC current high"}, CFlag{0x0004, "TEC current low"},
                    CFlag{0x0002, "bit 1"}, CFlag{0x0001, "bit 0"},
                    CFlag{0x8040, "temperature high, RX power low"}, CFlag{0x0000, "none"}));

class SfpStatus : public testing::TestWithParam<CFlag> {};

TEST_P(SfpStatus, HasItsName) {
    const auto& [status, name] = GetParam();
    const CSfpImage image = Internal().Set(CSfpImage::A2H + 110, static_cast<uint8_t>(status));
    EXPECT_EQ(image.In("Status"), name);
    EXPECT_EQ(image.In("Data"), (status & 1) != 0 ? "not ready" : "ready");
}

INSTANTIATE_TEST_SUITE_P(Of, SfpStatus,
                         testing::Values(CFlag{0x80, "TX disabled"}, CFlag{0x40, "soft TX disable"},
                                         CFlag{0x20, "RS1 high"}, CFlag{0x10, "RS0 high"},
                                         CFlag{0x08, "soft RS0"}, CFlag{0x04, "TX fault"},
                                         CFlag{0x02, "RX loss"}, CFlag{0x01, "none"},
                                         CFlag{0x86, "TX disabled, TX fault, RX loss"},
                                         CFlag{0x00, "none"}));

TEST(SfpDiagnostics, HaveACheckCodeOfTheirOwn) {
    CSfpImage image = Internal().Word(96, 0x1900).Seal();
    EXPECT_TRUE(DecodeSfp(image.bytes).checks_hold);
    image.bytes[CSfpImage::A2H + 94] ^= 0x08;
    const CDecodedRecord decoded = DecodeSfp(image.bytes);
    EXPECT_FALSE(decoded.checks_hold);
    EXPECT_EQ(ValueOf(decoded, "CC_DMI"), "0x00, wrong: calculated 0x08");
    EXPECT_EQ(ValueOf(decoded, "Temperature"), "25.00 C");
}

TEST(SfpDiagnostics, CheckTheConstantsAndNotTheValues) {
    for (size_t byte = 0; byte < CSfpImage::A2H; ++byte) {
        CSfpImage image = Internal().Seal();
        image.bytes[CSfpImage::A2H + byte] ^= 0x08;
        EXPECT_EQ(DecodeSfp(image.bytes).checks_hold, byte > 95) << byte;
    }
}

TEST(SfpDiagnostics, ThatAreNotDecodedAreNotChecked) {
    CSfpImage image = CSfpImage().WithDiagnostics(0x00).Put(20, "VENDOR").Seal();
    image.bytes[CSfpImage::A2H + 95] ^= 0xFF;
    EXPECT_TRUE(DecodeSfp(image.bytes).checks_hold);
}

}  // namespace
