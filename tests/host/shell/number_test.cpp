#include "host/shell/number.h"

#include <gmock/gmock.h>

#include <limits>

#include "host/usage_error.h"

namespace {

using testing::HasSubstr;

constexpr uint64_t ALL = std::numeric_limits<uint64_t>::max();

uint64_t Parsed(const std::string& word) {
    return ParseUnsigned(word, ALL, "any");
}

std::string RefusalOf(const std::string& word, uint64_t max = ALL) {
    try {
        ParseUnsigned(word, max, "0 to 99");
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "accepted";
}

TEST(Number, IsDecimalHexadecimalOctalOrBinary) {
    for (const char* word : {"10", "0xa", "0XA", "0o12", "0O12", "0b1010", "0B1010"}) {
        EXPECT_EQ(Parsed(word), 10U) << word;
    }
    EXPECT_EQ(Parsed("0xDEADbeef"), 0xDEADBEEFU);
    EXPECT_EQ(Parsed("18446744073709551615"), ALL);
    EXPECT_EQ(Parsed("0o1777777777777777777777"), ALL);
    EXPECT_EQ(Parsed("0b" + std::string(64, '1')), ALL);
}

TEST(Number, MayHaveZerosBehindAPrefix) {
    EXPECT_EQ(Parsed("0x0010"), 16U);
    EXPECT_EQ(Parsed("0b0000_1000"), 8U);
    EXPECT_EQ(Parsed("0o010"), 8U);
}

TEST(Number, HasASignBeforeItsPrefix) {
    const CNumber number = ParseNumber("-0x1_0", "any");
    EXPECT_TRUE(number.negative);
    EXPECT_EQ(number.magnitude, 16U);
    EXPECT_EQ(Parsed("-0"), 0U);
    EXPECT_THAT(RefusalOf("0x-1"), HasSubstr("is not a number"));
}

TEST(Number, MayBeDividedBetweenItsDigits) {
    EXPECT_EQ(Parsed("1_000_000"), 1000000U);
    EXPECT_EQ(Parsed("0xdead_beef"), 0xDEADBEEFU);
    EXPECT_EQ(Parsed("0b1010_0101"), 0xA5U);
    for (const char* word : {"_1", "1_", "1__0", "0x_1", "0b1_", "-_1"}) {
        EXPECT_EQ(RefusalOf(word),
                  "\"" + std::string(word) + "\": a _ in a number stands between two digits");
    }
}

TEST(Number, WithALeadingZeroIsRefusedWithBothReadings) {
    EXPECT_EQ(RefusalOf("010"), "\"010\" may be octal or decimal; write 0o10 or 10");
    EXPECT_EQ(RefusalOf("-007"), "\"-007\" may be octal or decimal; write -0o7 or -7");
    EXPECT_EQ(RefusalOf("0_1_0"), "\"0_1_0\" may be octal or decimal; write 0o1_0 or 1_0");
    EXPECT_EQ(RefusalOf("098"), "\"098\" has a leading zero; write 98");
    EXPECT_EQ(Parsed("0o10"), 8U);
    EXPECT_EQ(Parsed("10"), 10U);
}

TEST(Number, IsZeroInAnyCountOfZeros) {
    EXPECT_EQ(Parsed("0"), 0U);
    EXPECT_EQ(Parsed("00"), 0U);
    EXPECT_EQ(Parsed("0_000"), 0U);
}

TEST(Number, IsRefusedWithWhatFits) {
    EXPECT_EQ(RefusalOf("ten"), "\"ten\" is not a number; 0 to 99 fits (decimal, 0x, 0o or 0b)");
    for (const char* word : {"", "-", "_", "0x", "0o", "0b", "0b2", "0o8", "0xg", "12a", "1 2",
                             "+1", "--1", "1.5", "1e3", "0x0x1", "0d10"}) {
        EXPECT_THAT(RefusalOf(word), HasSubstr("is not a number; 0 to 99 fits")) << word;
    }
    EXPECT_THAT(RefusalOf(std::string("1\0", 2)), HasSubstr("\"1\\x00\" is not a number"));
    EXPECT_EQ(RefusalOf("100", 99), "100 is out of range, 0 to 99 fits");
    EXPECT_EQ(RefusalOf("-1", 99), "-1 is out of range, 0 to 99 fits");
    EXPECT_EQ(RefusalOf("18446744073709551616"),
              "18446744073709551616 is out of range, 0 to 99 fits");
    EXPECT_EQ(RefusalOf("0x1_0000_0000_0000_0000"),
              "0x1_0000_0000_0000_0000 is out of range, 0 to 99 fits");
}

}  // namespace
