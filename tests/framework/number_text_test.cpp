// The texts of numbers.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "framework/diag_functions.h"
#include "tests/support/lower_case.h"

namespace {

constexpr uint8_t DECIMAL = 0;
constexpr uint8_t HEX = 16;
constexpr uint8_t PADDED_HEX = 0x30;

TEST(NumberText, IsDecimalForBaseZero) {
    EXPECT_EQ(toString(uint8_t{0}, DECIMAL), "0");
    EXPECT_EQ(toString(uint8_t{255}, DECIMAL), "255");
    EXPECT_EQ(toString(uint32_t{0}, DECIMAL), "0");
    EXPECT_EQ(toString(uint32_t{4294967295}, DECIMAL), "4294967295");
    EXPECT_EQ(toString(uint64_t{0}, DECIMAL), "0");
    EXPECT_EQ(toString(uint64_t{18446744073709551615U}, DECIMAL), "18446744073709551615");
    EXPECT_EQ(toString(int64_t{0}, DECIMAL), "0");
    EXPECT_EQ(toString(std::numeric_limits<int64_t>::max(), DECIMAL), "9223372036854775807");
}

TEST(NumberText, HasAMinusSignForNegativeNumbers) {
    EXPECT_EQ(toString(int64_t{-1}, DECIMAL), "-1");
    EXPECT_EQ(toString(int64_t{-1234567890123}, DECIMAL), "-1234567890123");
    EXPECT_EQ(toString(std::numeric_limits<int64_t>::min(), DECIMAL), "-9223372036854775808");
}

TEST(NumberText, IsHexadecimalWithoutLeadingZerosForBaseSixteen) {
    EXPECT_EQ(toString(uint8_t{0}, HEX), "0x0");
    EXPECT_EQ(toString(uint8_t{5}, HEX), "0x5");
    EXPECT_EQ(toString(uint8_t{0x42}, HEX), "0x42");
    EXPECT_EQ(toString(uint32_t{0}, HEX), "0x0");
    EXPECT_EQ(toString(uint32_t{0x1000}, HEX), "0x1000");
    EXPECT_EQ(toString(uint64_t{0x100000000}, HEX), "0x100000000");
    EXPECT_EQ(toString(int64_t{0x77}, HEX), "0x77");
}

TEST(NumberText, ReachesTheLargestHexadecimalNumbers) {
    EXPECT_EQ(Lower(toString(uint8_t{0xFF}, HEX)), "0xff");
    EXPECT_EQ(Lower(toString(uint32_t{0xFFFFFFFF}, HEX)), "0xffffffff");
    EXPECT_EQ(Lower(toString(std::numeric_limits<uint64_t>::max(), HEX)), "0xffffffffffffffff");
}

TEST(NumberText, ShowsTheBitsOfANegativeNumberInHexadecimal) {
    EXPECT_EQ(Lower(toString(int64_t{-1}, HEX)), "0xffffffffffffffff");
    EXPECT_EQ(toString(std::numeric_limits<int64_t>::min(), HEX), "0x8000000000000000");
}

TEST(NumberText, HasAllDigitsOfItsTypeWhenPadded) {
    EXPECT_EQ(toString(uint8_t{0}, PADDED_HEX), "0x00");
    EXPECT_EQ(toString(uint8_t{5}, PADDED_HEX), "0x05");
    EXPECT_EQ(toString(uint32_t{0x12345}, PADDED_HEX), "0x00012345");
    EXPECT_EQ(toString(uint64_t{0x12345}, PADDED_HEX), "0x0000000000012345");
    EXPECT_EQ(toString(int64_t{1}, PADDED_HEX), "0x0000000000000001");
    EXPECT_EQ(Lower(toString(uint8_t{0xFF}, PADDED_HEX)), "0xff");
}

TEST(NumberText, IgnoresTheOtherBitsOfAValueType) {
    EXPECT_EQ(toString(uint8_t{18}, 0x81), "18");
    EXPECT_EQ(toString(uint8_t{18}, 0x91), "0x12");
    EXPECT_EQ(toString(uint8_t{2}, 0xB1), "0x02");
    EXPECT_EQ(toString(uint64_t{18}, 0x47), "18");
    EXPECT_EQ(toString(uint64_t{18}, 0x17), "0x12");
}

}  // namespace
