#include "decode/field_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

namespace {

std::string Text(std::string_view bytes) {
    return TextOf({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
}

TEST(FieldText, IsShownAsItStands) {
    EXPECT_EQ(Text("QO-10G-SR"), "QO-10G-SR");
    EXPECT_EQ(Text(" a  b~"), " a  b~");
}

TEST(FieldText, DropsPadding) {
    EXPECT_EQ(Text("A2  "), "A2");
    EXPECT_EQ(Text({"A2\0\0", 4}), "A2");
    EXPECT_EQ(Text("A2\xFF\xFF"), "A2");
    EXPECT_EQ(Text({"A2  \0\xFF", 6}), "A2");
}

TEST(FieldText, KeepsWhatIsNoPadding) {
    EXPECT_EQ(Text({"A\0B", 3}), "A\\x00B");
    EXPECT_EQ(Text("\xFF\xFFSN"), "\\xff\\xffSN");
}

TEST(FieldText, OfNothingButPaddingIsNone) {
    EXPECT_EQ(Text(""), "(none)");
    EXPECT_EQ(Text("    "), "(none)");
    EXPECT_EQ(Text({"\0\0", 2}), "(none)");
    EXPECT_EQ(Text("\xFF\xFF"), "(none)");
}

TEST(FieldText, EscapesEveryByteThatIsNotPrintable) {
    for (int byte = 0; byte <= 0xFF; ++byte) {
        const std::string bytes{static_cast<char>(byte), '.'};
        const std::string shown = byte >= 0x20 && byte < 0x7F
                                      ? std::string(1, static_cast<char>(byte))
                                      : "\\x" + Hex(static_cast<uint64_t>(byte)).substr(2);
        EXPECT_EQ(Text(bytes), shown + ".");
    }
}

TEST(FieldNumbers, HexHasItsDigitsAtLeast) {
    EXPECT_EQ(Hex(0), "0x00");
    EXPECT_EQ(Hex(0x2C), "0x2c");
    EXPECT_EQ(Hex(0x12C), "0x12c");
    EXPECT_EQ(Hex(0x2C, 4), "0x002c");
    EXPECT_EQ(Hex(0xFFFFFFFFFFFFFFFF), "0xffffffffffffffff");
}

TEST(FieldNumbers, BytesStandBetweenSeparators) {
    const uint8_t bytes[] = {0x00, 0x1A, 0xF0};
    EXPECT_EQ(HexBytes(bytes, ':'), "00:1a:f0");
    EXPECT_EQ(HexBytes({}, ':'), "");
}

TEST(FieldNumbers, FixedHasAllItsDecimals) {
    EXPECT_EQ(Fixed(41.5, 2), "41.50");
    EXPECT_EQ(Fixed(-0.25, 1), "-0.2");
    EXPECT_EQ(Fixed(3, 0), "3");
}

TEST(FieldNumbers, FixedHasNoNegativeZero) {
    EXPECT_EQ(Fixed(-0.001, 2), "0.00");
    EXPECT_EQ(Fixed(-0.0, 2), "0.00");
    EXPECT_EQ(Fixed(-0.01, 2), "-0.01");
}

TEST(FieldNumbers, FixedNamesWhatIsNoNumber) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    constexpr double NONE = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Fixed(INF, 2), "inf");
    EXPECT_EQ(Fixed(-INF, 2), "-inf");
    EXPECT_EQ(Fixed(NONE, 2), "nan");
    EXPECT_EQ(Fixed(-NONE, 2), "nan");
}

TEST(FieldNumbers, FixedTakesTheGreatest) {
    EXPECT_EQ(Fixed(std::numeric_limits<double>::max(), 2).size(), 309U + 3);
    EXPECT_EQ(Fixed(std::numeric_limits<double>::lowest(), 2).size(), 1U + 309 + 3);
}

TEST(FieldNumbers, DecimalDropsZerosAtTheEnd) {
    EXPECT_EQ(Decimal(13.125, 3), "13.125");
    EXPECT_EQ(Decimal(13.5, 3), "13.5");
    EXPECT_EQ(Decimal(120, 3), "120");
    EXPECT_EQ(Decimal(0, 3), "0");
}

TEST(FieldDates, AreDaysOfTheCalendar) {
    EXPECT_EQ(DateOf("20220503"), "2022-05-03");
    EXPECT_EQ(DateOf("20240229"), "2024-02-29");
    EXPECT_EQ(DateOf("20230229"), "");
    EXPECT_EQ(DateOf("20221301"), "");
    EXPECT_EQ(DateOf("20220001"), "");
    EXPECT_EQ(DateOf("20220100"), "");
}

TEST(FieldDates, AreEightDigits) {
    EXPECT_EQ(DateOf(""), "");
    EXPECT_EQ(DateOf("2022053"), "");
    EXPECT_EQ(DateOf("202205031"), "");
    EXPECT_EQ(DateOf("2022 503"), "");
    EXPECT_EQ(DateOf("2022-5-3"), "");
}

TEST(FieldChecks, TellWhatTheyShouldBe) {
    EXPECT_EQ(CheckText(0x1234, 0x1234, 4), "0x1234, right");
    EXPECT_EQ(CheckText(0x1234, 0x5678, 4), "0x1234, wrong: calculated 0x5678");
    EXPECT_EQ(CheckText(0x05, 0x2C, 2), "0x05, wrong: calculated 0x2c");
}

TEST(FieldLists, StandBetweenCommas) {
    EXPECT_EQ(Listed({}), "");
    EXPECT_EQ(Listed({"one"}), "one");
    EXPECT_EQ(Listed({"one", "two", "three"}), "one, two, three");
}

}  // namespace
