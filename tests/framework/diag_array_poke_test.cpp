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
using Write = CTestArray::CWrite;

constexpr uint8_t QUIET = VT_UINT8 | VF_HEX | VF_PAD;
constexpr uint8_t TRACED = QUIET | VF_TRACED;

TEST(ArrayPoke, WritesOneElementAndAnswersSuccessAlone) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    const CAnswer reply = Poke(array, 0x99, 0x2A, 0x2A);
    EXPECT_THAT(reply.bytes, ElementsAre(0));
    EXPECT_EQ(reply.resp_code, MSG_SUCCESS);
    EXPECT_THAT(array.Writes(), ElementsAre(Write{0x2A, 0x99}));
}

TEST(ArrayPoke, WritesTheSameValueUpwardsThroughARange) {
    CTestArray array(TARRAY_A, 0, 5, QUIET);
    EXPECT_THAT(Poke(array, 0x99, 3, 5).bytes, ElementsAre(0));
    EXPECT_THAT(array.Writes(), ElementsAre(Write{3, 0x99}, Write{4, 0x99}, Write{5, 0x99}));
}

TEST(ArrayPoke, OfAReversedRangeWritesItsFirstPositionOnly) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_THAT(Poke(array, 0x99, 5, 3).bytes, ElementsAre(0));
    EXPECT_THAT(array.Writes(), ElementsAre(Write{5, 0x99}));
}

TEST(ArrayPoke, ReachesTheLargestPosition) {
    CTestArray array(TARRAY_A, 0, UINT64_MAX, QUIET);
    EXPECT_THAT(Poke(array, 1, UINT64_MAX - 1, UINT64_MAX).bytes, ElementsAre(0));
    EXPECT_THAT(array.Writes(), ElementsAre(Write{UINT64_MAX - 1, 1}, Write{UINT64_MAX, 1}));
}

TEST(ArrayPoke, IsNotLoggedWithoutTheTraceBit) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0x31);
    EXPECT_THAT(Poke(array, 1, 1, 4).bytes, ElementsAre(0));
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(ArrayPoke, IsLoggedWithTheTraceBit) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, 0xB1);
    EXPECT_THAT(Poke(array, 7, 1, 1).bytes, ElementsAre(0));
    EXPECT_THAT(Poke(array, 7, 1, 4).bytes, ElementsAre(0));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS poke[0x1] val=0x07"},
                                         Line{0x80, "SUCCESS poke[0x1..0x4] val=0x07"}));
}

TEST(ArrayPoke, ShowsIndicesInDecimal) {
    const CLogCapture log;
    CTestArray array(TARRAY_I, 0, 0xFF, TRACED);
    EXPECT_THAT(Poke(array, 7, 11, 10).bytes, ElementsAre(0));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS poke[11..10] val=0x07"}));
}

TEST(ArrayPoke, OfAReadOnlyArrayIsRefused) {
    for (const uint8_t vt : {QUIET, TRACED}) {
        const CLogCapture log;
        CTestArray array(TARRAY_A, 0, 0xFF, vt, true);
        const CAnswer reply = Poke(array, 1, 1, 1);
        EXPECT_THAT(reply.bytes, ElementsAre(6));
        EXPECT_EQ(reply.resp_code, MSG_ERR_READONLY);
        EXPECT_THAT(array.Writes(), IsEmpty());
        EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (Value is readonly)"},
                                             Line{0x80, "ERR_READONLY poke"}));
    }
}

TEST(ArrayPoke, OfAReadOnlyArrayIsRefusedBeforeAnythingIsReadFromTheRequest) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET, true);
    EXPECT_THAT(Send(array, MSG_POKEV).bytes, ElementsAre(6));
    EXPECT_EQ(log.Lines()[0].second, "poke (Value is readonly)");
}

TEST(ArrayPoke, ThatFailsInTheMiddleKeepsWhatIsWrittenAndAnswersFailure) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, TRACED);
    array.FailAt(0x12);
    const CAnswer reply = Poke(array, 0x99, 0x10, 0x14);
    EXPECT_THAT(reply.bytes, ElementsAre(2));
    EXPECT_EQ(reply.resp_code, MSG_ERR_FAIL);
    EXPECT_THAT(array.Writes(), ElementsAre(Write{0x10, 0x99}, Write{0x11, 0x99}));
    EXPECT_THAT(
        log.Lines(),
        ElementsAre(Line{0x10, "poke[0x10..0x14] (Failed to write memory at 0012)"},
                    Line{0x80, "ERR_FAIL poke[0x10..0x14] (Failed to write memory at 0012)"}));
}

TEST(ArrayPoke, OutsideTheArrayIsRefusedBeforeAnythingIsWritten) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0x10, 0x19, QUIET);
    const CAnswer reply = Poke(array, 1, 0x18, 0x20);
    EXPECT_THAT(reply.bytes, ElementsAre(7));
    EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
    EXPECT_THAT(array.Writes(), IsEmpty());
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (Addr. 0x20 out of bounds)"},
                                         Line{0x80, "ERR_PARAM poke (Addr. 0x20 out of bounds)"}));
}

TEST(ArrayPoke, NamesTheFirstOfTwoBadPositions) {
    const CLogCapture log;
    CTestArray array(TARRAY_I, 10, 19, QUIET);
    EXPECT_THAT(Poke(array, 1, 30, 2).bytes, ElementsAre(7));
    EXPECT_EQ(log.Lines().at(0), (Line{0x10, "poke (Index 30 out of bounds)"}));
}

TEST(ArrayPoke, TakesTheValueBeforeThePositions) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    COutMsg request(MSG_POKEV);
    for (const uint8_t byte : CByteVector{0x77, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 3}) {
        request << byte;
    }
    CInMsg in(request);
    COutMsg out(MSG_POKEV);
    array.HandleMsg(in, out);
    EXPECT_THAT(PayloadOf(out), ElementsAre(0));
    EXPECT_THAT(array.Writes(), ElementsAre(Write{3, 0x77}));
}

TEST(ArrayPoke, WithAnIncompleteRequestIsRefused) {
    const CLogCapture log;
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    EXPECT_THAT(Send(array, MSG_POKEV, uint8_t{1}, uint64_t{1}, uint32_t{1}).bytes, ElementsAre(7));
    EXPECT_THAT(array.Writes(), IsEmpty());
    const std::vector<Line> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 0x10U);
    EXPECT_EQ(lines[1], (Line{0x80, "ERR_PARAM " + lines[0].second}));
}

}  // namespace
