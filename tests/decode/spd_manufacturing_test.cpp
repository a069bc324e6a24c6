#include <gtest/gtest.h>

#include "tests/decode/spd_image.h"

namespace {

TEST(SpdManufacturing, TellsTheMakers) {
    CSpdImage image;
    image.Set(117, {0x80, 0xAD}).Set(148, {0x83, 0x0B});
    EXPECT_EQ(image.Value("Module maker"), "SK Hynix (bank 1, code 0xad)");
    EXPECT_EQ(image.Value("DRAM maker"), "Nanya Technology (bank 4, code 0x0b)");
}

TEST(SpdManufacturing, TellsTheDate) {
    const auto date = [](int year, int week) {
        return CSpdImage().Set(120, {year, week}).Value("Date");
    };
    EXPECT_EQ(date(0x14, 0x23), "2014 week 23");
    EXPECT_EQ(date(0x09, 0x01), "2009 week 1");
    EXPECT_EQ(date(0x99, 0x53), "2099 week 53");
    EXPECT_EQ(date(0x00, 0x10), "2000 week 10");
}

TEST(SpdManufacturing, ShowsADateThatIsNoneAsNumbers) {
    const auto date = [](int year, int week) {
        return CSpdImage().Set(120, {year, week}).Value("Date");
    };
    EXPECT_EQ(date(0x14, 0x54), "0x14 0x54");
    EXPECT_EQ(date(0x14, 0x00), "0x14 0x00");
    EXPECT_EQ(date(0x1A, 0x10), "0x1a 0x10");
    EXPECT_EQ(date(0xA1, 0x10), "0xa1 0x10");
    EXPECT_EQ(date(0x14, 0x1F), "0x14 0x1f");
    EXPECT_EQ(date(0xFF, 0xFF), "0xff 0xff");
}

TEST(SpdManufacturing, TellsLocationAndSerialNumber) {
    CSpdImage image;
    image.Set(119, {0x41}).Set(122, {0x00, 0x12, 0xAB, 0xFF});
    EXPECT_EQ(image.Value("Location"), "0x41");
    EXPECT_EQ(image.Value("Serial number"), "0x0012abff");
}

TEST(SpdManufacturing, TellsPartNumberAndRevision) {
    CSpdImage image;
    image.SetText(128, "M393B1K70DH0-YK0  ").Set(146, {0x01, 0x02});
    EXPECT_EQ(image.Value("Part number"), "M393B1K70DH0-YK0");
    EXPECT_EQ(image.Value("Revision"), "0x0102");
    image.SetText(128, "eighteen\x01 of them\x7F");
    EXPECT_EQ(image.Value("Part number"), "eighteen\\x01 of them\\x7f");
    image.SetText(128, std::string(18, ' '));
    EXPECT_EQ(image.Value("Part number"), "(none)");
}

}  // namespace
