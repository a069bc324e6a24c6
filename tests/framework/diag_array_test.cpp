#include "framework/diag_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Line = CLogCapture::Line;
using Write = std::pair<uint64_t, unsigned char>;

constexpr uint8_t QUIET = VT_UINT8 | VF_HEX | VF_PAD;
constexpr uint8_t TRACED = QUIET | VF_TRACED;

// Element p reads as the low byte of p. Writes are noted, not kept.
class CTestArray : public CDiagArray<unsigned char> {
  public:
    CTestArray(ENodeType type, uint64_t sa, uint64_t ea, uint8_t vt, bool ro = false)
        : CDiagArray(type, "memory", "test array", sa, ea, ro, vt) {}

    void FailAt(uint64_t pos) { m_fail_at = pos; }
    const std::vector<uint64_t>& Reads() const { return m_reads; }
    const std::vector<Write>& Writes() const { return m_writes; }

    void Set(uint64_t pos, const unsigned char& value) override {
        if (pos == m_fail_at) {
            throw CDiagException("Failed to write memory at %04X", static_cast<unsigned int>(pos));
        }
        m_writes.emplace_back(pos, value);
    }
    unsigned char Get(uint64_t pos) override {
        if (pos == m_fail_at) {
            throw CDiagException("Failed to read memory at %04X", static_cast<unsigned int>(pos));
        }
        m_reads.push_back(pos);
        return static_cast<unsigned char>(pos);
    }

  private:
    std::optional<uint64_t> m_fail_at;
    std::vector<uint64_t> m_reads;
    std::vector<Write> m_writes;
};

CReply Peek(CDiagMenu& array, uint64_t first, uint64_t last) {
    return Send(array, MSG_PEEKV, first, last);
}
CReply Poke(CDiagMenu& array, uint8_t value, uint64_t first, uint64_t last) {
    return Send(array, MSG_POKEV, value, first, last);
}

// A good answer to a peek of `first` to `last`.
CByteVector Elements(uint64_t first, uint64_t last) {
    CBytes bytes;
    bytes.U8(0);
    for (uint64_t pos = first; pos <= last; ++pos) {
        bytes.U64(pos).U8(static_cast<uint8_t>(pos));
    }
    return bytes;
}

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

TEST(ArrayPeek, OfOnePositionAnswersOnePair) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    const CReply reply = Peek(array, 0x2A, 0x2A);
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
    const CReply reply = Peek(array, 2, 6);
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
    const CReply reply = Peek(array, 0, 113);
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
        const CReply reply = Peek(array, c.first, c.last);
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
    const CReply reply = Send(array, MSG_PEEKV, uint64_t{1});
    EXPECT_THAT(reply.bytes, ElementsAre(7));
    EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
    EXPECT_THAT(array.Reads(), IsEmpty());
    const std::vector<Line> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 0x10U);
    EXPECT_EQ(lines[0].second.substr(0, 6), "peek (");
    EXPECT_EQ(lines[1], (Line{0x80, "ERR_PARAM " + lines[0].second}));
}

TEST(ArrayPoke, WritesOneElementAndAnswersSuccessAlone) {
    CTestArray array(TARRAY_A, 0, 0xFF, QUIET);
    const CReply reply = Poke(array, 0x99, 0x2A, 0x2A);
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
        const CReply reply = Poke(array, 1, 1, 1);
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
    const CReply reply = Poke(array, 0x99, 0x10, 0x14);
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
    const CReply reply = Poke(array, 1, 0x18, 0x20);
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
