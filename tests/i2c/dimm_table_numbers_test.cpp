// Numbers of a DIMM table: always hexadecimal, up to the first character that
// is no digit.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class DimmTableNumbers : public CDimmTableTest {
  protected:
    // The six elements with these texts.
    static std::string Texts6(const std::string& version, const std::string& signature,
                              const std::string& jedec, const std::string& start,
                              const std::string& end) {
        return Element("dimm_table_version", version) + Element("signature", signature) +
               Module(jedec, "PN", start, end);
    }
    uint64_t Jedec(const std::string& text) {
        Parse(Document(Header() + Module(text, "PN")));
        return static_cast<uint64_t>(Entry(0).man_id_h) << 32 | Entry(0).man_id_l;
    }
};

struct CNumber {
    const char* text;
    unsigned int number;
};

constexpr CNumber NUMBERS[] = {
    {"10", 0x10},
    {"0x10", 0x10},
    {"0X10", 0x10},
    {"0", 0},
    {"0x0", 0},
    {"00000000000000000000000010", 0x10},
    {"aBcDeF", 0xABCDEF},
    {"0xAbCdEf", 0xABCDEF},
    // What only looks like another base or like a fraction.
    {"0b1", 0xB1},
    {"1e3", 0x1E3},
    {"1.5", 1},
    // No digit at all.
    {"zz", 0},
    {"xyz", 0},
    {"0x", 0},
    {"0xg", 0},
    {"x10", 0},
    {"$10", 0},
    {"-", 0},
    {" ", 0},
    // Digits, then something else.
    {"12junk", 0x12},
    {"12 34", 0x12},
    {"1_000", 1},
    {"1,000", 1},
    {"10h", 0x10},
    {"0x0x10", 0},
    {"0x 10", 0},
    {"10\n", 0x10},
    {"10 \t\n  ", 0x10},
    {"1\n0", 1},
    // White space in front; a text that began with a tab or a line break would
    // not be one.
    {" 10", 0x10},
    {"  \t\n 0x10", 0x10},
    {"&#13;10", 0x10},
    {"&#xA0;10", 0},
    {"&#x2003;10", 0},
    // A sign.
    {"+10", 0x10},
    {"+0x10", 0x10},
    {"-1", 0xFFFFFFFF},
    {"-0x10", 0xFFFFFFF0},
    {" -2", 0xFFFFFFFE},
    {"- 1", 0},
    {"--1", 0},
    {"+-1", 0},
    // The low 32 bits.
    {"FFFFFFFF", 0xFFFFFFFF},
    {"100000000", 0},
    {"123456789", 0x23456789},
    {"FFFFFFFF00000001", 1},
    {"FFFFFFFFFFFFFFFF", 0xFFFFFFFF},
    {"-FFFFFFFF", 1},
    // More than 64 bits are the largest number of 64 bits, with either sign.
    {"10000000000000000", 0xFFFFFFFF},
    {"123456789ABCDEF00", 0xFFFFFFFF},
    {"-10000000000000000", 0xFFFFFFFF},
    // Digits of other scripts are none.
    {"\xD9\xA1\xD9\xA2", 0},
    {"\xEF\xBC\x91", 0},
};

TEST_F(DimmTableNumbers, AreHexadecimal) {
    for (const CNumber& number : NUMBERS) {
        Parse(Document(Required() + RegisterSet(Pair(number.text, "7"))));
        EXPECT_THAT(Offsets(0), ElementsAre(number.number)) << '"' << number.text << '"';
        EXPECT_THAT(Values(0), ElementsAre(7)) << '"' << number.text << '"';
    }
}

TEST_F(DimmTableNumbers, AreReadAlikeInEveryElement) {
    for (const CNumber& number : NUMBERS) {
        const std::string text = number.text;
        Parse(Document(Texts6(text, text, "1", text, text) + RegisterSet(Pair("7", text))));
        EXPECT_EQ(m_table.dimm_version, number.number) << '"' << text << '"';
        EXPECT_EQ(m_table.signature, number.number) << '"' << text << '"';
        EXPECT_EQ(Entry(0).rev_Start, number.number) << '"' << text << '"';
        EXPECT_EQ(Entry(0).rev_End, number.number) << '"' << text << '"';
        EXPECT_THAT(Values(0), ElementsAre(number.number)) << '"' << text << '"';
    }
}

TEST_F(DimmTableNumbers, LoseTheirHighHalfWithoutAWord) {
    Parse(Document(Texts6("1122334455667788", "2122334455667788", "1", "3122334455667788",
                          "4122334455667789") +
                   RegisterSet(Pair("5122334455667788", "6122334455667788"))));
    EXPECT_EQ(m_table.dimm_version, 0x55667788U);
    EXPECT_EQ(m_table.signature, 0x55667788U);
    EXPECT_EQ(Entry(0).rev_Start, 0x55667788U);
    EXPECT_EQ(Entry(0).rev_End, 0x55667789U);
    EXPECT_THAT(Offsets(0), ElementsAre(0x55667788));
    EXPECT_THAT(Values(0), ElementsAre(0x55667788));
    EXPECT_EQ(m_log.Lines().size(), Progress().size());
    EXPECT_THAT(Progress(), testing::Not(testing::Contains(testing::HasSubstr("Warning"))));
}

TEST_F(DimmTableNumbers, OfTheManufacturerHave64Bits) {
    EXPECT_EQ(Jedec("0x123456789ABCDEF0"), 0x123456789ABCDEF0U);
    EXPECT_EQ(Entry(0).man_id_h, 0x12345678U);
    EXPECT_EQ(Entry(0).man_id_l, 0x9ABCDEF0U);
    EXPECT_EQ(Jedec("1"), 1U);
    EXPECT_EQ(Jedec("100000000"), 0x100000000U);
    EXPECT_EQ(Jedec("FFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(Jedec("10000000000000000"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(Jedec("-1"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(Jedec("-10000000000000000"), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(Jedec("-FFFFFFFFFFFFFFFF"), 1U);
    EXPECT_EQ(Jedec("zz"), 0U);
}

TEST_F(DimmTableNumbers, AreNotWhatPartNumbersAre) {
    Parse(Document(Header() + Module("1", "0x10")));
    EXPECT_STREQ(PartNum(0), "0x10");
}

TEST_F(DimmTableNumbers, MayHaveAThousandDigits) {
    Parse(Document(Required() +
                   RegisterSet(Pair(std::string(1000, '0') + "12", std::string(1000, '1')))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x12));
    EXPECT_THAT(Values(0), ElementsAre(0xFFFFFFFF));
}

TEST_F(DimmTableNumbers, StandInTheOrderOfTheDocument) {
    const Numbers offsets{0x30, 0x10, 0x10, 0x20};
    std::string pairs;
    for (const char* offset : {"30", "10", "10", "20"}) {
        pairs += Pair(offset, "1");
    }
    Parse(Document(Required() + RegisterSet(pairs)));
    EXPECT_THAT(Offsets(0), ElementsAreArray(offsets));
    EXPECT_THAT(Values(0), ElementsAre(1, 1, 1, 1));
}

}  // namespace
