#include "framework/diag_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/test_array.h"

namespace {

using testing::ElementsAre;
using Line = CLogCapture::Line;
using Write = CTestArray::CWrite;

constexpr uint8_t QUIET = VT_UINT8 | VF_HEX | VF_PAD;
constexpr uint8_t TRACED = QUIET | VF_TRACED;

TEST(Array, IsANodeThatKnowsItsRange) {
    const CTestArray array(TARRAY_I, 3, 9, 0x31, true);
    EXPECT_EQ(array.GetNodeType(), TARRAY_I);
    EXPECT_STREQ(array.GetName(), "memory");
    EXPECT_STREQ(array.GetDescription(), "test array");
    EXPECT_EQ(array.GetValueType(), 0x31);
    EXPECT_EQ(array.GetStartAddr(), 3U);
    EXPECT_EQ(array.GetEndAddr(), 9U);
    EXPECT_TRUE(array.IsReadOnly());
}

class CFilledAddrArray : public CDiagAddrArray<unsigned char> {
  public:
    CFilledAddrArray() : CDiagAddrArray("memory", "by address", 0x10, 0x1F, false, TRACED) {}
    void Set(uint64_t, const unsigned char&) override {}
    unsigned char Get(uint64_t) override { return 0x55; }
};

TEST(AddrArray, IsAnArrayThatIsAddressed) {
    CFilledAddrArray array;
    EXPECT_EQ(array.GetNodeType(), TARRAY_A);
    EXPECT_EQ(array.GetStartAddr(), 0x10U);
    EXPECT_EQ(array.GetEndAddr(), 0x1FU);
    EXPECT_FALSE(array.IsReadOnly());
    const CLogCapture log;
    EXPECT_EQ(Peek(array, 0x10, 0x10).bytes, CBytes().U8(0).U64(0x10).U8(0x55).Get());
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek[0x10] val=0x55"}));
}

TEST(Array, DescribesItselfByTypeRangeAndReadOnlyFlag) {
    for (const bool ro : {false, true}) {
        CTestArray array(TARRAY_A, 0x100, 0xFEDCBA9876543210, 0xB1, ro);
        COutMsg out;
        array.Query(out);
        EXPECT_EQ(PayloadOf(out),
                  CBytes().U8(0xB1).U64(0x100).U64(0xFEDCBA9876543210).U8(ro ? 1 : 0).Get());
    }
}

TEST(Array, StepsUpToTheLastPositionThatIsAskedFor) {
    CTestArray array(TARRAY_A, 0, 10, QUIET);
    uint64_t pos = 3;
    EXPECT_TRUE(array.IncAddr(&pos, 4));
    EXPECT_EQ(pos, 4U);
    EXPECT_FALSE(array.IncAddr(&pos, 4));
    EXPECT_EQ(pos, 4U);
    EXPECT_FALSE(array.IncAddr(&pos, 2));
    EXPECT_EQ(pos, 4U);
}

TEST(Array, StepsNoFurtherThanItsEnd) {
    CTestArray array(TARRAY_A, 0, 10, QUIET);
    uint64_t pos = 9;
    EXPECT_TRUE(array.IncAddr(&pos, 100));
    EXPECT_FALSE(array.IncAddr(&pos, 100));
    EXPECT_EQ(pos, 10U);
}

TEST(Array, DoesNotStepOverTheLargestPosition) {
    CTestArray array(TARRAY_A, 0, UINT64_MAX, QUIET);
    uint64_t pos = UINT64_MAX;
    EXPECT_FALSE(array.IncAddr(&pos, UINT64_MAX));
    EXPECT_EQ(pos, UINT64_MAX);
}

TEST(Array, NamesAPositionOutOfBoundsByIndexOrAddress) {
    const CTestArray array(TARRAY_A, 0, 10, QUIET);
    EXPECT_EQ(array.AddrExc(true, 11), "Index 11 out of bounds");
    EXPECT_EQ(array.AddrExc(false, 0x11), "Addr. 0x11 out of bounds");
    EXPECT_EQ(array.AddrExc(true, UINT64_MAX), "Index 18446744073709551615 out of bounds");
}

TEST(Array, AppendsTheTextOfARange) {
    const CTestArray array(TARRAY_A, 0, 10, QUIET);
    std::string text = "peek";
    array.PutAddrs(text, false, 0x10, 0x10);
    EXPECT_EQ(text, "peek[0x10]");
    array.PutAddrs(text, true, 10, 12);
    EXPECT_EQ(text, "peek[0x10][10..12]");
}

TEST(Array, LooksAtTheMessageTypeWithoutRoutingFlags) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_EQ(
        Send(array, static_cast<EMsgType>(MSG_PEEKV | 0xC000), uint64_t{1}, uint64_t{1}).bytes,
        Elements(1, 1));
}

TEST(Array, LeavesOtherMessagesToTheMenu) {
    CTestArray array(TARRAY_A, 2, 3, QUIET);
    CDiagMenu menu(TARRAY_A, "memory", "");
    for (const EMsgType type : {MSG_CALL, MSG_START, MSG_STOP}) {
        EXPECT_EQ(Send(array, type).bytes, Send(menu, type).bytes);
    }
    EXPECT_EQ(Send(array, MSG_QUERY).bytes,
              CBytes().U8(MSG_SUCCESS).U8(QUIET).U64(2).U64(3).U8(0).Get());
}

// An array whose positions step by four.
class CWordArray : public CTestArray {
  public:
    CWordArray() : CTestArray(TARRAY_A, 0, 0xFF, TRACED) {}
    bool IncAddr(uint64_t* pos, uint64_t last) override {
        if (*pos + 4 > last) {
            return false;
        }
        *pos += 4;
        return true;
    }
};

TEST(Array, StepsAsItsClassSays) {
    CWordArray array;
    EXPECT_EQ(Peek(array, 0, 11).bytes,
              CBytes().U8(0).U64(0).U8(0).U64(4).U8(4).U64(8).U8(8).Get());
    EXPECT_THAT(Poke(array, 1, 8, 15).bytes, ElementsAre(0));
    EXPECT_THAT(array.Writes(), ElementsAre(Write{8, 1}, Write{12, 1}));
}

}  // namespace
