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
using testing::IsEmpty;
using Line = CLogCapture::Line;

constexpr uint8_t QUIET = VT_UINT8 | VF_HEX | VF_PAD;
constexpr uint8_t TRACED = QUIET | VF_TRACED;

TEST(ArrayPeek, OfOnePositionAnswersOnePair) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    const CAnswer reply = Peek(array, 0x2A, 0x2A);
    EXPECT_THAT(reply.bytes, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0x2A, 0x2A));
    EXPECT_EQ(reply.resp_code, MSG_SUCCESS);
}

TEST(ArrayPeek, OfARangeAnswersPairsInAscendingOrder) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_EQ(Peek(array, 2, 5).bytes, Elements(2, 5));
    EXPECT_THAT(array.Reads(), ElementsAre(2, 3, 4, 5));
}

TEST(ArrayPeek, OfAReversedRangeReadsInAscendingOrderToo) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_EQ(Peek(array, 5, 2).bytes, Elements(2, 5));
    EXPECT_THAT(array.Reads(), ElementsAre(2, 3, 4, 5));
}

TEST(ArrayPeek, ReadsFromTheFirstPositionToTheLastInclusive) {
    CTestArray array(TARRAY_A, 4, 7, QUIET);
    EXPECT_EQ(Peek(array, 4, 7).bytes, Elements(4, 7));
    EXPECT_EQ(Peek(array, 7, 7).bytes, Elements(7, 7));
}

TEST(ArrayPeek, ReachesTheLargestPosition) {
    CTestArray array(TARRAY_A, UINT64_MAX - 1, UINT64_MAX, QUIET);
    EXPECT_EQ(Peek(array, UINT64_MAX - 1, UINT64_MAX).bytes,
              CBytes().U8(0).U64(UINT64_MAX - 1).U8(0xFE).U64(UINT64_MAX).U8(0xFF).Get());
}

TEST(ArrayPeek, IsAllowedOnAReadOnlyArray) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET, true);
    EXPECT_EQ(Peek(array, 1, 1).bytes, Elements(1, 1));
}

TEST(ArrayPeek, IsNotLoggedWithoutTheTraceBit) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0x31);
    Peek(array, 1, 4);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(ArrayPeek, OfOnePositionIsLoggedWithTheTraceBit) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0xB1);
    Peek(array, 7, 7);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek[0x7] val=0x07"}));
}

TEST(ArrayPeek, OfARangeIsLoggedWithItsFirstValue) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0xB1);
    Peek(array, 0x12, 0x15);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek[0x12..0x15] val=0x12 ..."}));
}

TEST(ArrayPeek, OfAReversedRangeIsLoggedAsAskedWithTheValueReadFirst) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0xB1);
    Peek(array, 0x15, 0x12);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek[0x15..0x12] val=0x12 ..."}));
}

TEST(ArrayPeek, ShowsIndicesInDecimal) {
    const CLogCapture log;
    CTestArray array(TARRAY_I, 0, 0xFF, TRACED);
    Peek(array, 20, 22);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek[20..22] val=0x14 ..."}));
}

TEST(ArrayPeek, ShowsIndicesAsSignedNumbers) {
    const CLogCapture log;
    CTestArray array(TARRAY_I, UINT64_MAX - 1, UINT64_MAX, TRACED);
    Peek(array, UINT64_MAX, UINT64_MAX - 1);
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].second.substr(0, 21), "SUCCESS peek[-1..-2] ");
}

TEST(ArrayPeek, ThatFailsInTheMiddleAnswersFailureAlone) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    array.FailAt(4);
    const CAnswer reply = Peek(array, 2, 6);
    EXPECT_THAT(reply.bytes, ElementsAre(2));
    EXPECT_EQ(reply.resp_code, MSG_ERR_FAIL);
    EXPECT_THAT(array.Reads(), ElementsAre(2, 3));
    EXPECT_THAT(log.Lines(),
                ElementsAre(Line{0x10, "peek[0x2..0x6] (Failed to read memory at 0004)"},
                            Line{0x80, "ERR_FAIL peek[0x2..0x6] (Failed to read memory at 0004)"}));
}

TEST(ArrayPeek, OfAsManyElementsAsAnAnswerHoldsSucceeds) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_EQ(Peek(array, 0, 112).bytes, Elements(0, 112));
}

TEST(ArrayPeek, OfMoreElementsThanAnAnswerHoldsAnswersTheWrongLengthAlone) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, TRACED);
    const CAnswer reply = Peek(array, 0, 113);
    EXPECT_THAT(reply.bytes, ElementsAre(5));
    EXPECT_EQ(reply.resp_code, MSG_ERR_MSGLEN);
    const std::vector<Line> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 0x10U);
    EXPECT_EQ(lines[0].second.substr(0, 16), "peek[0x0..0x71] ");
    EXPECT_EQ(lines[1], (Line{0x80, "ERR_MSGLEN " + lines[0].second}));
}

TEST(ArrayPeek, OutsideTheArrayIsRefusedBeforeAnythingIsRead) {
    struct CCase {
        uint64_t first;
        uint64_t last;
        const char* reason;
    };
    for (const CCase& c :
         {CCase{0x20, 0x20, "Addr. 0x20 out of bounds"}, CCase{0x0, 0x0, "Addr. 0x0 out of bounds"},
          CCase{0x18, 0x20, "Addr. 0x20 out of bounds"},
          CCase{0x5, 0x30, "Addr. 0x5 out of bounds"},
          CCase{0x30, 0x5, "Addr. 0x30 out of bounds"}}) {
        const CLogCapture log;
        CTestArray array(TARRAY_A, 0x10, 0x19, QUIET);
        const CAnswer reply = Peek(array, c.first, c.last);
        EXPECT_THAT(reply.bytes, ElementsAre(7));
        EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
        EXPECT_THAT(array.Reads(), IsEmpty());
        const std::string reason(c.reason);
        EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "peek (" + reason + ")"},
                                             Line{0x80, "ERR_PARAM peek (" + reason + ")"}));
    }
}

TEST(ArrayPeek, JustBehindTheEndIsRefused) {
    CTestArray array(TARRAY_A, 0, 0x19, QUIET);
    EXPECT_EQ(Peek(array, 0x19, 0x19).Code(), MSG_SUCCESS);
    EXPECT_EQ(Peek(array, 0x1A, 0x1A).Code(), MSG_ERR_PARAM);
}

TEST(ArrayPeek, NamesABadIndexInDecimal) {
    const CLogCapture log;
    CTestArray array(TARRAY_I, 0, 15, QUIET);
    EXPECT_THAT(Peek(array, 16, 16).bytes, ElementsAre(7));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "peek (Index 16 out of bounds)"},
                                         Line{0x80, "ERR_PARAM peek (Index 16 out of bounds)"}));
}

TEST(ArrayPeek, WithoutBothPositionsIsRefused) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    const CAnswer reply = Send(array, MSG_PEEKV, uint64_t{1});
    EXPECT_THAT(reply.bytes, ElementsAre(7));
    EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
    EXPECT_THAT(array.Reads(), IsEmpty());
    const std::vector<Line> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 0x10U);
    EXPECT_EQ(lines[0].second.substr(0, 6), "peek (");
    EXPECT_EQ(lines[1], (Line{0x80, "ERR_PARAM " + lines[0].second}));
}

}  // namespace
