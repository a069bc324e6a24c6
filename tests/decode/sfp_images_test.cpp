// The modules of the default board, whole.
#include <gtest/gtest.h>

#include <span>

#include "decode/decode_sfp.h"
#include "tests/decode/decoded.h"

namespace {

const std::string ONE_GIGABIT = "i2c-1/0x70/ch0/0x50.bin";
const std::string TEN_GIGABIT = "i2c-1/0x70/ch1/0x71/ch3/0x50.bin";
const std::string TEN_GIGABIT_DIAGNOSTICS = "i2c-1/0x70/ch1/0x71/ch3/0x51.bin";

TEST(SfpImages, OneGigabit) {
    const CDecodedRecord decoded = DecodeSfp(BoardImage(ONE_GIGABIT));
    EXPECT_EQ(LinesInOne(decoded), Expected("sfp-1g.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(SfpImages, TenGigabit) {
    const CDecodedRecord decoded = DecodeSfp(BoardImage(TEN_GIGABIT));
    EXPECT_EQ(LinesInOne(decoded), Expected("sfp-10g.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(SfpImages, TenGigabitWithDiagnostics) {
    std::vector<uint8_t> image = BoardImage(TEN_GIGABIT);
    const std::vector<uint8_t> diagnostics = BoardImage(TEN_GIGABIT_DIAGNOSTICS);
    image.insert(image.end(), diagnostics.begin(), diagnostics.end());
    const CDecodedRecord decoded = DecodeSfp(image);
    EXPECT_EQ(LinesInOne(decoded), Expected("sfp-10g-diagnostics.txt"));
    EXPECT_TRUE(decoded.checks_hold);
}

TEST(SfpImages, NeedNoMoreThanTheSerialId) {
    const std::vector<uint8_t> image = BoardImage(TEN_GIGABIT);
    EXPECT_EQ(LinesInOne(DecodeSfp(std::span(image).first(SFP_SIZE))), Expected("sfp-10g.txt"));
}

TEST(SfpImages, HaveNoHalfOfTheDiagnostics) {
    std::vector<uint8_t> image = BoardImage(TEN_GIGABIT);
    image.resize(511);
    EXPECT_EQ(LinesInOne(DecodeSfp(image)), Expected("sfp-10g.txt"));
}

}  // namespace
