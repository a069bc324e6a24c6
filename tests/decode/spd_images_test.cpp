// The modules of the default board, whole.
#include <gtest/gtest.h>

#include "decode/decode_spd.h"
#include "tests/decode/decoded.h"

namespace {

TEST(SpdImages, RegisteredModule) {
    const CDecodedRecord decoded = DecodeSpd(BoardImage("i2c-0/0x77/ch0/0x51.bin"));
    EXPECT_EQ(LinesInOne(decoded), Expected("spd_registered.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(SpdImages, UnbufferedModule) {
    const CDecodedRecord decoded = DecodeSpd(BoardImage("i2c-0/0x77/ch0/0x53.bin"));
    EXPECT_EQ(LinesInOne(decoded), Expected("spd_unbuffered.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(SpdImages, MoreBytesThanTheRecordAreLeftAlone) {
    std::vector<uint8_t> image = BoardImage("i2c-0/0x77/ch0/0x51.bin");
    image.resize(512, 0xAA);
    EXPECT_EQ(LinesInOne(DecodeSpd(image)), Expected("spd_registered.txt"));
}

}  // namespace
