#include "host/shell/value_type.h"

#include <gmock/gmock.h>

#include <vector>

#include "framework/diag_types.h"
#include "host/usage_error.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<uint8_t> Packed(uint8_t vt, const std::string& word) {
    COutMsg request;
    CValueType(vt).Pack(request, word);
    return {request.GetPayload(), request.GetPayload() + request.GetHeader().len};
}

std::string RefusalOf(uint8_t vt, const std::string& word) {
    try {
        Packed(vt, word);
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "accepted";
}

std::string Unpacked(uint8_t vt, const COutMsg& message) {
    CInMsg in(message);
    return CValueType(vt).Unpack(in).text;
}

TEST(ValueType, PacksEachIntegerInItsWidth) {
    EXPECT_THAT(Packed(VT_UINT8, "0x5a"), ElementsAre(0x5a));
    EXPECT_THAT(Packed(VT_UINT16, "258"), ElementsAre(1, 2));
    EXPECT_THAT(Packed(VT_UINT32, "0X01020304"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(Packed(VT_UINT64, "18446744073709551615"),
                testing::AllOf(testing::SizeIs(8), testing::Each(0xff)));
    EXPECT_THAT(Packed(VT_UINT16 | VF_HEX, "7"), ElementsAre(0, 7));
    EXPECT_THAT(Packed(VT_UINT16, "0b1_0000_0001"), ElementsAre(1, 1));
    EXPECT_THAT(Packed(VT_INT8, "-0o10"), ElementsAre(0xf8));
}

TEST(ValueType, PacksNegativeNumbersAsTwosComplement) {
    EXPECT_THAT(Packed(VT_INT8, "-128"), ElementsAre(0x80));
    EXPECT_THAT(Packed(VT_INT16, "-1"), ElementsAre(0xff, 0xff));
    EXPECT_THAT(Packed(VT_INT32, "-0x10"), ElementsAre(0xff, 0xff, 0xff, 0xf0));
    EXPECT_THAT(Packed(VT_INT64, "-9223372036854775808"), ElementsAre(0x80, 0, 0, 0, 0, 0, 0, 0));
}

TEST(ValueType, RefusesNumbersOutsideTheirTypeAndSaysWhatFits) {
    EXPECT_EQ(RefusalOf(VT_UINT8, "256"), "256 is out of range, 0 to 255 fits");
    EXPECT_EQ(RefusalOf(VT_UINT8, "-1"), "-1 is out of range, 0 to 255 fits");
    EXPECT_EQ(RefusalOf(VT_INT8, "128"), "128 is out of range, -128 to 127 fits");
    EXPECT_EQ(RefusalOf(VT_INT8, "-129"), "-129 is out of range, -128 to 127 fits");
    EXPECT_THAT(RefusalOf(VT_UINT32, "4294967296"), HasSubstr("0 to 4294967295"));
    EXPECT_THAT(RefusalOf(VT_UINT64, "18446744073709551616"),
                HasSubstr("out of range, 0 to 18446744073709551615"));
    EXPECT_THAT(RefusalOf(VT_INT64, "9223372036854775808"),
                HasSubstr("-9223372036854775808 to 9223372036854775807"));
}

TEST(ValueType, RefusesWhatIsNoNumberAndSaysWhatFits) {
    EXPECT_THAT(RefusalOf(VT_INT8, "abc"), HasSubstr("is not a number; -128 to 127 fits"));
}

TEST(ValueType, PacksTextWithItsLength) {
    EXPECT_THAT(Packed(VT_STRING, "ab"), ElementsAre(0, 2, 'a', 'b'));
    EXPECT_THAT(Packed(VT_STRING, ""), ElementsAre(0, 0));
}

TEST(ValueType, RefusesTypesThatCannotBeTyped) {
    EXPECT_EQ(RefusalOf(VT_ENUM, "1"), "values of type enum cannot be typed");
    EXPECT_EQ(RefusalOf(VT_USERDEF, "1"), "values of type user-defined cannot be typed");
    EXPECT_EQ(RefusalOf(0x0F, "1"), "values of type type 15 cannot be typed");
}

TEST(ValueType, ShowsAnswersAsTheirTypeSays) {
    COutMsg message;
    message << uint8_t{0xfe};
    EXPECT_EQ(Unpacked(VT_UINT8, message), "254");
    EXPECT_EQ(Unpacked(VT_INT8, message), "-2");
    EXPECT_EQ(Unpacked(VT_UINT8 | VF_HEX, message), "0xfe");
    COutMsg wide;
    wide << uint32_t{0x1f};
    EXPECT_EQ(Unpacked(VT_UINT32 | VF_HEX | VF_PAD, wide), "0x0000001f");
    COutMsg text;
    text << "tab\there";
    EXPECT_EQ(Unpacked(VT_STRING, text), "tab\\there");
}

}  // namespace
