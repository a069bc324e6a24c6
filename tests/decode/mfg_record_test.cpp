#include <gtest/gtest.h>

#include <algorithm>

#include "decode/decode_mfg.h"
#include "i2c/crc16.h"
#include "tests/decode/decoded.h"

namespace {

using Image = std::vector<uint8_t>;

Image BoardRecord() {
    Image image = BoardImage("i2c-0/0x50.bin");
    image.resize(MFG_SIZE);
    return image;
}

std::string ValueIn(const Image& image, std::string_view name) {
    return ValueOf(DecodeMfg(image), name);
}

// MAC addresses from `first` on.
Image WithMacs(const std::array<uint8_t, 6>& first, uint8_t count_high, uint8_t count_low) {
    Image image(MFG_SIZE, 0);
    std::copy(first.begin(), first.end(), image.begin() + 86);
    image[92] = count_high;
    image[93] = count_low;
    return image;
}

Image WithDate(const std::string& date) {
    Image image(MFG_SIZE, 0);
    std::copy(date.begin(), date.end(), image.begin() + 72);
    return image;
}

TEST(MfgRecord, OfTheDefaultBoard) {
    const CDecodedRecord decoded = DecodeMfg(BoardRecord());
    EXPECT_EQ(LinesInOne(decoded), Expected("mfg-eeprom.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(MfgRecord, IsTheBeginningOfTheChip) {
    const CDecodedRecord decoded = DecodeMfg(BoardImage("i2c-0/0x50.bin"));
    EXPECT_EQ(LinesInOne(decoded), Expected("mfg-eeprom.txt"));
}

TEST(MfgRecord, OfABlankChip) {
    const CDecodedRecord decoded = DecodeMfg(Image(MFG_SIZE, 0xFF));
    EXPECT_EQ(LinesInOne(decoded), Expected("mfg-blank.txt"));
    EXPECT_FALSE(decoded.checks_hold);
}

TEST(MfgRecord, OfZeros) {
    const CDecodedRecord decoded = DecodeMfg(Image(MFG_SIZE, 0x00));
    EXPECT_EQ(LinesInOne(decoded), Expected("mfg-zeros.txt"));
    EXPECT_FALSE(decoded.checks_hold);
}

TEST(MfgRecord, WithAWrongChecksumIsToldAllTheSame) {
    Image image = BoardRecord();
    image[95] ^= 0x01;
    const CDecodedRecord decoded = DecodeMfg(image);
    EXPECT_FALSE(decoded.checks_hold);
    EXPECT_EQ(ValueOf(decoded, "CRC-16"), "0x8b06, wrong: calculated 0x8b07");
    EXPECT_EQ(ValueOf(decoded, "Serial number"), "QB22350000417");
}

TEST(MfgRecord, EveryCoveredByteCountsInTheChecksum) {
    for (size_t byte = 0; byte < MFG_SIZE; ++byte) {
        Image image = BoardRecord();
        image[byte] ^= 0x10;
        EXPECT_FALSE(DecodeMfg(image).checks_hold) << byte;
    }
}

TEST(MfgRecord, MacAddressesEndBeforeTheCount) {
    EXPECT_EQ(ValueIn(WithMacs({0x02, 0, 0, 0, 0, 0x01}, 0, 1), "Last"), "02:00:00:00:00:01");
    EXPECT_EQ(ValueIn(WithMacs({0x02, 0, 0, 0, 0, 0xFF}, 0, 2), "Last"), "02:00:00:00:01:00");
    EXPECT_EQ(ValueIn(WithMacs({0x02, 0, 0, 0xFF, 0xFF, 0xFF}, 1, 0), "Last"), "02:00:01:00:00:fe");
}

TEST(MfgRecord, NoMacAddressesHaveNoLastOne) {
    const Image image = WithMacs({0x02, 0, 0, 0, 0, 0x01}, 0, 0);
    EXPECT_EQ(ValueIn(image, "First"), "02:00:00:00:00:01");
    EXPECT_EQ(ValueIn(image, "Last"), "(none)");
    EXPECT_EQ(ValueIn(image, "Count"), "0");
}

TEST(MfgRecord, MacAddressesMayReachTheVeryLast) {
    EXPECT_EQ(ValueIn(WithMacs({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF0}, 0, 16), "Last"),
              "ff:ff:ff:ff:ff:ff");
}

TEST(MfgRecord, MacAddressesPastTheVeryLastAreTold) {
    EXPECT_EQ(ValueIn(WithMacs({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF0}, 0, 17), "Last"),
              "past ff:ff:ff:ff:ff:ff, by 1");
}

TEST(MfgRecord, DateThatIsNoneIsShownAsItStands) {
    EXPECT_EQ(ValueIn(WithDate("20240229"), "Manufacturing date"), "2024-02-29");
    EXPECT_EQ(ValueIn(WithDate("20230229"), "Manufacturing date"), "20230229");
    EXPECT_EQ(ValueIn(WithDate("2022-W35"), "Manufacturing date"), "2022-W35");
    EXPECT_EQ(ValueIn(WithDate("220831"), "Manufacturing date"), "220831");
}

TEST(MfgRecord, TextsMayHoldAnyByte) {
    Image image(MFG_SIZE, 0);
    image[3] = 0xFF;
    image[4] = 'S';
    image[5] = 0x07;
    image[6] = '1';
    EXPECT_EQ(ValueIn(image, "Serial number"), "\\xffS\\x071");
}

}  // namespace
