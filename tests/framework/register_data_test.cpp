// Register data: from command arguments, to texts, and the names of registers.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_functions.h"
#include "tests/support/lower_case.h"

namespace {

constexpr uint64_t Negative(int64_t value) {
    return static_cast<uint64_t>(value);
}

struct CRange {
    EValueType type;
    uint64_t bits;      // the bits of the type
    uint64_t smallest;  // as an argument
    uint64_t below;     // one less
    uint64_t largest;
    uint64_t above;
};

const std::vector<CRange> RANGES{
    {VT_INT8, 0xFF, Negative(-128), Negative(-129), 127, 128},
    {VT_UINT8, 0xFF, 0, Negative(-1), 255, 256},
    {VT_INT16, 0xFFFF, Negative(-32768), Negative(-32769), 32767, 32768},
    {VT_UINT16, 0xFFFF, 0, Negative(-1), 65535, 65536},
    {VT_INT32, 0xFFFFFFFF, Negative(-2147483648LL), Negative(-2147483649LL), 2147483647,
     2147483648},
    {VT_UINT32, 0xFFFFFFFF, 0, Negative(-1), 4294967295, 4294967296},
};

TEST(RegDataFromArg, TakesWhatTheTypeHolds) {
    for (const CRange& range : RANGES) {
        SCOPED_TRACE(range.type);
        uint64_t data = 0;
        EXPECT_TRUE(reg_data_from_arg(&data, range.type, range.smallest));
        EXPECT_EQ(data & range.bits, range.smallest & range.bits);
        EXPECT_TRUE(reg_data_from_arg(&data, range.type, range.largest));
        EXPECT_EQ(data & range.bits, range.largest);
        EXPECT_TRUE(reg_data_from_arg(&data, range.type, 1));
        EXPECT_EQ(data, 1U);
    }
}

TEST(RegDataFromArg, RefusesWhatTheTypeDoesNotHold) {
    for (const CRange& range : RANGES) {
        SCOPED_TRACE(range.type);
        uint64_t data = 0;
        EXPECT_FALSE(reg_data_from_arg(&data, range.type, range.below));
        EXPECT_FALSE(reg_data_from_arg(&data, range.type, range.above));
        EXPECT_FALSE(reg_data_from_arg(&data, range.type, 0x7FFFFFFFFFFFFFFF));
    }
}

TEST(RegDataFromArg, TakesEverythingFor64Bits) {
    for (const EValueType type : {VT_INT64, VT_UINT64}) {
        for (const uint64_t arg : {uint64_t{0}, uint64_t{0x7FFFFFFFFFFFFFFF},
                                   uint64_t{0x8000000000000000}, UINT64_MAX}) {
            uint64_t data = 1;
            EXPECT_TRUE(reg_data_from_arg(&data, type, arg));
            EXPECT_EQ(data, arg);
        }
    }
}

TEST(RegDataFromArg, RefusesTypesThatAreNoIntegers) {
    for (const EValueType type : {VT_STRING, VT_ENUM, VT_USERDEF}) {
        uint64_t data = 0;
        EXPECT_FALSE(reg_data_from_arg(&data, type, 1)) << type;
    }
}

std::string RegText(EValueType type, uint64_t data, uint8_t format) {
    std::string text;
    EXPECT_TRUE(reg_data_to_string(text, &data, type, format));
    return text;
}

TEST(RegDataToString, ShowsUnsignedTypesInDecimal) {
    EXPECT_EQ(RegText(VT_UINT8, 255, 0), "255");
    EXPECT_EQ(RegText(VT_UINT16, 65535, 0), "65535");
    EXPECT_EQ(RegText(VT_UINT32, 4294967295, 0), "4294967295");
    EXPECT_EQ(RegText(VT_UINT64, UINT64_MAX, 0), "18446744073709551615");
}

TEST(RegDataToString, ShowsSignedTypesWithTheirSign) {
    EXPECT_EQ(RegText(VT_INT8, 0x80, 0), "-128");
    EXPECT_EQ(RegText(VT_INT8, 0x7F, 0), "127");
    EXPECT_EQ(RegText(VT_INT16, 0xFFFF, 0), "-1");
    EXPECT_EQ(RegText(VT_INT32, 0xFFFFFFFE, 0), "-2");
    EXPECT_EQ(RegText(VT_INT64, UINT64_MAX, 0), "-1");
}

TEST(RegDataToString, ShowsWhatAnArgumentWasTakenAs) {
    for (const EValueType type : {VT_INT8, VT_INT16, VT_INT32, VT_INT64}) {
        uint64_t data = 0;
        ASSERT_TRUE(reg_data_from_arg(&data, type, Negative(-5)));
        EXPECT_EQ(RegText(type, data, 0), "-5");
    }
}

TEST(RegDataToString, ShowsHexadecimalWithoutLeadingZeros) {
    for (const EValueType type :
         {VT_INT8, VT_UINT8, VT_INT16, VT_UINT16, VT_INT32, VT_UINT32, VT_INT64, VT_UINT64}) {
        EXPECT_EQ(RegText(type, 0, 0x10), "0x0");
        EXPECT_EQ(RegText(type, 0x42, 0x10), "0x42");
    }
}

TEST(RegDataToString, PadsHexadecimalToTheWidthOfTheType) {
    EXPECT_EQ(RegText(VT_UINT8, 5, 0x30), "0x05");
    EXPECT_EQ(RegText(VT_UINT16, 5, 0x30), "0x0005");
    EXPECT_EQ(RegText(VT_UINT32, 5, 0x30), "0x00000005");
    EXPECT_EQ(RegText(VT_UINT64, 5, 0x30), "0x0000000000000005");
    EXPECT_EQ(RegText(VT_INT16, 5, 0x30), "0x0005");
}

TEST(RegDataToString, ShowsNegativeNumbersInTheirOwnWidthInHexadecimal) {
    EXPECT_EQ(Lower(RegText(VT_INT8, 0xFF, 0x30)), "0xff");
    EXPECT_EQ(Lower(RegText(VT_INT16, 0xFFFE, 0x30)), "0xfffe");
    EXPECT_EQ(RegText(VT_INT32, 0x80000000, 0x10), "0x80000000");
}

TEST(RegDataToString, RefusesTypesThatAreNoIntegers) {
    for (const EValueType type : {VT_STRING, VT_ENUM, VT_USERDEF}) {
        uint64_t data = 1;
        std::string text;
        EXPECT_FALSE(reg_data_to_string(text, &data, type, 0)) << type;
    }
}

struct CRegName {
    const char* arg;
    const char* name;
    unsigned int index;
};

TEST(RegNames, AreSplitFromTheirIndex) {
    for (const CRegName& c :
         {CRegName{"ctrl[3]", "ctrl", 3}, CRegName{"ctrl[0]", "ctrl", 0},
          CRegName{"ctrl[0x1f]", "ctrl", 31}, CRegName{"ctrl[0x1F]", "ctrl", 31},
          CRegName{"ctrl[010]", "ctrl", 10}, CRegName{"c[12]", "c", 12},
          CRegName{"ctrl[4294967295]", "ctrl", 4294967295},
          CRegName{"ctrl[0xffffffff]", "ctrl", 4294967295}}) {
        std::string name = "old";
        unsigned int index = 77;
        EXPECT_TRUE(diag_crack_regname_index(name, index, c.arg)) << c.arg;
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(index, c.index);
    }
}

TEST(RegNames, StandForThemselvesWithoutAnIndex) {
    for (const char* arg : {"ctrl", "", "port-status", "a.b"}) {
        std::string name = "old";
        unsigned int index = 77;
        EXPECT_FALSE(diag_crack_regname_index(name, index, arg)) << arg;
        EXPECT_EQ(name, arg);
        EXPECT_EQ(index, 0U);
    }
}

TEST(RegNames, AreTheWholeTextWhenTheIndexIsMalformed) {
    for (const char* arg : {"ctrl[",
                            "ctrl]",
                            "ctrl[]",
                            "ctrl[3",
                            "ctrl3]",
                            "ctrl[x]",
                            "ctrl[3]x",
                            "ctrl[3] ",
                            "ctrl[ 3]",
                            "ctrl[3 ]",
                            "ctrl[-1]",
                            "ctrl[+1]",
                            "ctrl[0x]",
                            "ctrl[1f]",
                            "ctrl[0xg]",
                            "[3]",
                            "[]",
                            "[",
                            "]",
                            "ctrl[4294967296]",
                            "ctrl[0x100000000]",
                            "ctrl[18446744073709551616]"}) {
        std::string name = "old";
        unsigned int index = 77;
        EXPECT_FALSE(diag_crack_regname_index(name, index, arg)) << arg;
        EXPECT_EQ(name, arg);
        EXPECT_EQ(index, 0U);
    }
}

}  // namespace
