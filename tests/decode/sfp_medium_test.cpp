// What a module works on: its lengths and its wavelength are those of a fibre, of copper
// or of the cable that it is.
#include <gtest/gtest.h>

#include <set>

#include "tests/decode/sfp_image.h"

namespace {

constexpr const char* FIBRES[] = {"Single-mode fibre", "Single-mode fibre, finer",
                                  "50 um fibre, OM2",  "62.5 um fibre, OM1",
                                  "50 um fibre, OM3",  "50 um fibre, OM4"};

// With a length in each of the bytes that may have one.
CSfpImage WithLengths() {
    return CSfpImage().Set(14, 5).Set(15, 9).Set(16, 1).Set(17, 2).Set(18, 3).Set(19, 0x45);
}

void ExpectFibre(const CSfpImage& image) {
    for (const char* fibre : FIBRES) {
        EXPECT_NE(image.In(fibre), "absent") << fibre;
    }
    EXPECT_EQ(image.In("Copper or cable"), "absent");
    EXPECT_EQ(image.In("Cable length code"), "absent");
}

void ExpectNoFibre(const CSfpImage& image) {
    for (const char* fibre : FIBRES) {
        EXPECT_EQ(image.In(fibre), "absent") << fibre;
    }
    EXPECT_EQ(image.In("Copper or cable"), "3 m");
    EXPECT_EQ(image.In("Cable length code"), "0x45");
}

TEST(SfpMedium, IsFibreIfNothingElseIsTold) {
    ExpectFibre(WithLengths());
}

TEST(SfpMedium, IsACableByTheCableTechnology) {
    ExpectNoFibre(WithLengths().Set(8, 0x04));
    ExpectNoFibre(WithLengths().Set(8, 0x08));
    ExpectFibre(WithLengths().Set(8, 0xF3));
}

TEST(SfpMedium, IsCopperByItsEthernet) {
    ExpectNoFibre(WithLengths().Set(6, 0x08));
    ExpectNoFibre(WithLengths().Set(6, 0x04));
    ExpectFibre(WithLengths().Set(6, 0xF3));
}

TEST(SfpMedium, IsCopperByItsConnector) {
    const std::set<int> copper = {0x02, 0x03, 0x04, 0x05, 0x20, 0x21, 0x22};
    for (int code = 0; code <= 0xFF; ++code) {
        SCOPED_TRACE(code);
        const CSfpImage image = WithLengths().Set(2, static_cast<uint8_t>(code));
        copper.contains(code) ? ExpectNoFibre(image) : ExpectFibre(image);
    }
}

TEST(SfpMedium, IsACableOrCopperByTheExtendedCompliance) {
    const std::set<int> not_fibre = {0x01, 0x08, 0x0B, 0x0C, 0x0D, 0x18, 0x19,
                                     0x30, 0x31, 0x32, 0x33, 0x3F, 0x40,  // cables
                                     0x0E, 0x16, 0x1C, 0x1D, 0x1E};       // twisted pairs
    for (int code = 0; code <= 0xFF; ++code) {
        SCOPED_TRACE(code);
        const CSfpImage image = WithLengths().Set(36, static_cast<uint8_t>(code));
        not_fibre.contains(code) ? ExpectNoFibre(image) : ExpectFibre(image);
    }
}

TEST(SfpMedium, OfCopperMayHaveNoLengths) {
    EXPECT_EQ(CSfpImage().Set(2, 0x22).In("Copper or cable"), "not stated");
    EXPECT_EQ(CSfpImage().Set(2, 0x22).In("Cable length code"), "not stated");
    EXPECT_EQ(CSfpImage().Set(2, 0x22).Set(18, 255).In("Copper or cable"), "more than 254 m");
}

TEST(SfpPassiveCable, HasAttenuationsInPlaceOfFibre) {
    for (CSfpImage cable :
         {WithLengths().Set(8, 0x04), WithLengths().Set(36, 0x0B), WithLengths().Set(36, 0x0C),
          WithLengths().Set(36, 0x0D), WithLengths().Set(36, 0x3F), WithLengths().Set(36, 0x40)}) {
        EXPECT_EQ(cable.In("Attenuation at 12.9 GHz"), "5 dB");
        EXPECT_EQ(cable.In("Attenuation at 25.78 GHz"), "9 dB");
        EXPECT_EQ(cable.Set(14, 0).In("Attenuation at 12.9 GHz"), "unspecified");
    }
}

TEST(SfpActiveCable, HasNoAttenuations) {
    for (const CSfpImage& cable : {WithLengths().Set(8, 0x08), WithLengths().Set(36, 0x01),
                                   WithLengths().Set(36, 0x08), WithLengths().Set(36, 0x16)}) {
        EXPECT_EQ(cable.In("Attenuation at 12.9 GHz"), "absent");
        EXPECT_EQ(cable.In("Attenuation at 25.78 GHz"), "absent");
    }
}

TEST(SfpCable, HasComplianceInPlaceOfAWavelength) {
    CSfpImage passive;
    passive.Set(8, 0x04).Set(60, 0x01);
    EXPECT_EQ(passive.In("Cable complies with"), "SFF-8431 appendix E");
    EXPECT_EQ(passive.In("Wavelength"), "absent");
    EXPECT_EQ(passive.Set(60, 0x06).In("Cable complies with"), "byte 60 bit 2, FC-PI-4 appendix H");
    EXPECT_EQ(passive.Set(60, 0x00).In("Cable complies with"), "none");

    CSfpImage active;
    active.Set(8, 0x08).Set(60, 0x0F).Set(61, 0x80);
    EXPECT_EQ(active.In("Cable complies with"),
              "FC-PI-4 limiting, SFF-8431 limiting, FC-PI-4 appendix H, SFF-8431 appendix E, "
              "byte 61 bit 7");
    EXPECT_EQ(active.In("Wavelength"), "absent");
}

TEST(SfpCable, ByItsExtendedComplianceHasAWavelength) {
    CSfpImage cable;
    cable.Set(36, 0x01).Set(60, 0x03).Set(61, 0x52);
    EXPECT_EQ(cable.In("Wavelength"), "850 nm");
    EXPECT_EQ(cable.In("Cable complies with"), "absent");
}

}  // namespace
