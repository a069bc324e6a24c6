#include "framework/diag_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Line = CLogCapture::Line;

constexpr uint8_t TRACED_STRING = VT_STRING | VF_TRACED;

// A value whose element operations fail on demand.
class CFailingValue : public CDiagValue<std::string> {
  public:
    explicit CFailingValue(uint8_t vt) : CDiagValue("value", "fails", false, vt) {}
    void Set(const std::string& value) override {
        throw CDiagException("cannot store %s", value.c_str());
    }
    std::string Get() override { throw CDiagException("line %d is silent", 3); }
};

TEST(Value, IsANodeThatKnowsItsType) {
    const CDiagMemValue<std::string> value("driver", "driver name", true, TRACED_STRING);
    EXPECT_EQ(value.GetNodeType(), TVALUE);
    EXPECT_STREQ(value.GetName(), "driver");
    EXPECT_STREQ(value.GetDescription(), "driver name");
    EXPECT_EQ(value.GetValueType(), 0x88);
    EXPECT_TRUE(value.IsReadOnly());
}

TEST(Value, DescribesItselfByValueTypeThenReadOnlyFlag) {
    for (const bool ro : {false, true}) {
        CDiagMemValue<unsigned char> value("v", "", ro, VT_UINT8 | VF_HEX);
        COutMsg out;
        value.Query(out);
        EXPECT_THAT(PayloadOf(out), ElementsAre(0x11, ro ? 1 : 0));
    }
}

TEST(Value, GivesBackWhatWasSet) {
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, "first");
    EXPECT_EQ(value.Get(), "first");
    value.Set("second");
    EXPECT_EQ(value.Get(), "second");
}

TEST(Value, IsZeroOrEmptyWithoutAnInitialValue) {
    EXPECT_EQ(CDiagMemValue<std::string>("v", "", false, VT_STRING).Get(), "");
    EXPECT_EQ(CDiagMemValue<unsigned char>("v", "", false, VT_UINT8).Get(), 0);
}

TEST(ValuePeek, AnswersSuccessAndTheText) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, "/dev/mdio");
    const CAnswer reply = Send(value, MSG_PEEKV);
    EXPECT_EQ(reply.bytes, CBytes().U8(0).Text("/dev/mdio").Get());
    EXPECT_EQ(reply.resp_code, MSG_SUCCESS);
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(ValuePeek, AnswersAnEmptyTextAndTextsWithZeroBytes) {
    const std::string zeros("\0a\0", 3);
    CDiagMemValue<std::string> value("v", "", false, VT_STRING);
    EXPECT_EQ(Send(value, MSG_PEEKV).bytes, CBytes().U8(0).Text("").Get());
    value.Set(zeros);
    EXPECT_EQ(Send(value, MSG_PEEKV).bytes, CBytes().U8(0).Text(zeros).Get());
}

TEST(ValuePeek, AnswersIntegersInTheirOwnWidth) {
    CDiagMemValue<unsigned char> u8("v", "", false, VT_UINT8, 0xFE);
    CDiagMemValue<uint16_t> u16("v", "", false, VT_UINT16, 0xFEDC);
    CDiagMemValue<uint32_t> u32("v", "", false, VT_UINT32, 0xFEDCBA98);
    CDiagMemValue<uint64_t> u64("v", "", false, VT_UINT64, 0xFEDCBA9876543210);
    EXPECT_EQ(Send(u8, MSG_PEEKV).bytes, CBytes().U8(0).U8(0xFE).Get());
    EXPECT_EQ(Send(u16, MSG_PEEKV).bytes, CBytes().U8(0).U16(0xFEDC).Get());
    EXPECT_EQ(Send(u32, MSG_PEEKV).bytes, CBytes().U8(0).U32(0xFEDCBA98).Get());
    EXPECT_EQ(Send(u64, MSG_PEEKV).bytes, CBytes().U8(0).U64(0xFEDCBA9876543210).Get());
}

TEST(ValuePeek, IsAllowedOnAReadOnlyValue) {
    CDiagMemValue<unsigned char> value("v", "", true, VT_UINT8, 9);
    EXPECT_THAT(Send(value, MSG_PEEKV).bytes, ElementsAre(0, 9));
}

TEST(ValuePeek, OfATracedValueIsLogged) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, TRACED_STRING, "up");
    EXPECT_EQ(Send(value, MSG_PEEKV).bytes, CBytes().U8(0).Text("up").Get());
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS peek val=up"}));
}

// Notes how long the answer was when something was logged.
class CAnswerWatch : public ILogSink {
  public:
    explicit CAnswerWatch(const COutMsg& out) : m_out(out) { CDiagLog::Instance().AddSink(*this); }
    ~CAnswerWatch() override { CDiagLog::Instance().RemoveSink(*this); }
    void Write(const CLogRecord&) override { m_lengths.push_back(m_out.GetHeader().len); }
    const std::vector<size_t>& Lengths() const { return m_lengths; }

  private:
    const COutMsg& m_out;
    std::vector<size_t> m_lengths;
};

TEST(ValuePeek, OfATracedValueIsLoggedBeforeTheAnswer) {
    CDiagMemValue<std::string> value("v", "", false, TRACED_STRING, "up");
    CInMsg in{COutMsg(MSG_PEEKV)};
    COutMsg out(MSG_PEEKV);
    const CAnswerWatch watch(out);
    value.HandleMsg(in, out);
    EXPECT_THAT(watch.Lengths(), ElementsAre(0U));
    EXPECT_EQ(out.GetHeader().len, 5);
}

TEST(ValuePeek, LogsTracedIntegersInTheFormatOfTheirType) {
    struct CCase {
        uint8_t flags;
        const char* text;
    };
    for (const CCase& c : {CCase{0, "18"}, CCase{VF_HEX, "0x12"}, CCase{VF_HEX | VF_PAD, "0x12"}}) {
        const CLogCapture log;
        CDiagMemValue<unsigned char> value(
            "v", "", false, static_cast<uint8_t>(VT_UINT8 | VF_TRACED | c.flags), 0x12);
        Send(value, MSG_PEEKV);
        EXPECT_THAT(log.Lines(),
                    ElementsAre(Line{0x80, std::string("SUCCESS peek val=") + c.text}));
    }
}

template <class T>
std::string TracedPeek(uint8_t vt, T number) {
    const CLogCapture log;
    CDiagMemValue<T> value("v", "", false, static_cast<uint8_t>(vt | VF_TRACED), number);
    Send(value, MSG_PEEKV);
    return log.Joined(LW_RESULT);
}

TEST(ValuePeek, PadsTracedIntegersToTheirOwnWidth) {
    constexpr uint8_t PADDED = VF_HEX | VF_PAD;
    EXPECT_EQ(TracedPeek<unsigned char>(VT_UINT8 | PADDED, 5), "SUCCESS peek val=0x05");
    EXPECT_EQ(TracedPeek<uint16_t>(VT_UINT16 | PADDED, 5), "SUCCESS peek val=0x0005");
    EXPECT_EQ(TracedPeek<uint32_t>(VT_UINT32 | PADDED, 5), "SUCCESS peek val=0x00000005");
    EXPECT_EQ(TracedPeek<uint64_t>(VT_UINT64 | PADDED, 5), "SUCCESS peek val=0x0000000000000005");
}

TEST(ValuePeek, ShowsTracedIntegersOfEveryWidthInDecimal) {
    EXPECT_EQ(TracedPeek<uint16_t>(VT_UINT16, 65535), "SUCCESS peek val=65535");
    EXPECT_EQ(TracedPeek<uint32_t>(VT_UINT32, 4294967295), "SUCCESS peek val=4294967295");
    EXPECT_EQ(TracedPeek<uint64_t>(VT_UINT64, 18446744073709551615U),
              "SUCCESS peek val=18446744073709551615");
}

TEST(ValuePeek, ThatFailsAnswersFailureAlone) {
    const CLogCapture log;
    CFailingValue value(VT_STRING);
    const CAnswer reply = Send(value, MSG_PEEKV);
    EXPECT_THAT(reply.bytes, ElementsAre(2));
    EXPECT_EQ(reply.resp_code, MSG_ERR_FAIL);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "peek (line 3 is silent)"}));
}

TEST(ValuePeek, ThatFailsOnATracedValueIsTraced) {
    const CLogCapture log;
    CFailingValue value(TRACED_STRING);
    EXPECT_THAT(Send(value, MSG_PEEKV).bytes, ElementsAre(2));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "peek (line 3 is silent)"},
                                         Line{0x80, "ERR_FAIL peek (line 3 is silent)"}));
}

TEST(ValuePeek, OfATextThatNoAnswerHoldsAnswersFailureAlone) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, std::string(1022, 'x'));
    EXPECT_THAT(Send(value, MSG_PEEKV).bytes, ElementsAre(2));
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].first, 0x10U);
    EXPECT_EQ(log.Lines()[0].second.substr(0, 6), "peek (");
}

TEST(ValuePeek, OfTheLongestTextThatAnAnswerHoldsSucceeds) {
    const std::string text(1021, 'x');
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, text);
    EXPECT_EQ(Send(value, MSG_PEEKV).bytes, CBytes().U8(0).Text(text).Get());
}

TEST(ValuePoke, StoresTheTextAndAnswersSuccessAlone) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, "old");
    const CAnswer reply = Send(value, MSG_POKEV, std::string("new"));
    EXPECT_THAT(reply.bytes, ElementsAre(0));
    EXPECT_EQ(reply.resp_code, MSG_SUCCESS);
    EXPECT_EQ(value.Get(), "new");
    EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(ValuePoke, ReadsIntegersInTheirOwnWidth) {
    CDiagMemValue<unsigned char> u8("v", "", false, VT_UINT8);
    CDiagMemValue<uint16_t> u16("v", "", false, VT_UINT16);
    CDiagMemValue<uint32_t> u32("v", "", false, VT_UINT32);
    CDiagMemValue<uint64_t> u64("v", "", false, VT_UINT64);
    EXPECT_THAT(Send(u8, MSG_POKEV, uint8_t{0xFE}).bytes, ElementsAre(0));
    EXPECT_THAT(Send(u16, MSG_POKEV, uint16_t{0xFEDC}).bytes, ElementsAre(0));
    EXPECT_THAT(Send(u32, MSG_POKEV, uint32_t{0xFEDCBA98}).bytes, ElementsAre(0));
    EXPECT_THAT(Send(u64, MSG_POKEV, uint64_t{0xFEDCBA9876543210}).bytes, ElementsAre(0));
    EXPECT_EQ(u8.Get(), 0xFE);
    EXPECT_EQ(u16.Get(), 0xFEDC);
    EXPECT_EQ(u32.Get(), 0xFEDCBA98U);
    EXPECT_EQ(u64.Get(), 0xFEDCBA9876543210U);
}

TEST(ValuePoke, OfATracedValueIsLogged) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, TRACED_STRING);
    EXPECT_THAT(Send(value, MSG_POKEV, std::string("eth0")).bytes, ElementsAre(0));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS poke val=eth0"}));
}

TEST(ValuePoke, OfATracedIntegerIsLoggedInItsFormat) {
    const CLogCapture log;
    CDiagMemValue<unsigned char> value("v", "", false, 0xB1);
    EXPECT_THAT(Send(value, MSG_POKEV, uint8_t{7}).bytes, ElementsAre(0));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x80, "SUCCESS poke val=0x07"}));
}

TEST(ValuePoke, OfAReadOnlyValueIsRefusedAndChangesNothing) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", true, VT_STRING, "fixed");
    const CAnswer reply = Send(value, MSG_POKEV, std::string("new"));
    EXPECT_THAT(reply.bytes, ElementsAre(6));
    EXPECT_EQ(reply.resp_code, MSG_ERR_READONLY);
    EXPECT_EQ(value.Get(), "fixed");
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (Value is readonly)"}));
}

TEST(ValuePoke, OfATracedReadOnlyValueIsTraced) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", true, TRACED_STRING, "fixed");
    EXPECT_THAT(Send(value, MSG_POKEV, std::string("new")).bytes, ElementsAre(6));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (Value is readonly)"},
                                         Line{0x80, "ERR_READONLY poke"}));
}

TEST(ValuePoke, OfAReadOnlyValueIsRefusedEvenWithoutAnArgument) {
    CDiagMemValue<std::string> value("v", "", true, VT_STRING, "fixed");
    EXPECT_THAT(Send(value, MSG_POKEV).bytes, ElementsAre(6));
}

TEST(ValuePoke, WithoutAValueIsRefused) {
    const CLogCapture log;
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, "old");
    const CAnswer reply = Send(value, MSG_POKEV);
    EXPECT_THAT(reply.bytes, ElementsAre(7));
    EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
    EXPECT_EQ(value.Get(), "old");
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].first, 0x10U);
    EXPECT_EQ(log.Lines()[0].second.substr(0, 6), "poke (");
}

TEST(ValuePoke, WithoutAValueIsTracedWithTheSameReason) {
    const CLogCapture log;
    CDiagMemValue<uint32_t> value("v", "", false, VT_UINT32 | VF_TRACED, 5);
    EXPECT_THAT(Send(value, MSG_POKEV, uint16_t{1}).bytes, ElementsAre(7));
    EXPECT_EQ(value.Get(), 5U);
    const std::vector<Line> lines = log.Lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].first, 0x10U);
    EXPECT_EQ(lines[1], (Line{0x80, "ERR_PARAM " + lines[0].second}));
}

TEST(ValuePoke, ThatTheValueRefusesAnswersAsABadArgument) {
    const CLogCapture log;
    CFailingValue value(VT_STRING);
    const CAnswer reply = Send(value, MSG_POKEV, std::string("x1"));
    EXPECT_THAT(reply.bytes, ElementsAre(7));
    EXPECT_EQ(reply.resp_code, MSG_ERR_PARAM);
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (cannot store x1)"}));
}

TEST(ValuePoke, ThatATracedValueRefusesIsTraced) {
    const CLogCapture log;
    CFailingValue value(TRACED_STRING);
    EXPECT_THAT(Send(value, MSG_POKEV, std::string("x1")).bytes, ElementsAre(7));
    EXPECT_THAT(log.Lines(), ElementsAre(Line{0x10, "poke (cannot store x1)"},
                                         Line{0x80, "ERR_PARAM poke (cannot store x1)"}));
}

TEST(Value, LooksAtTheMessageTypeWithoutRoutingFlags) {
    CDiagMemValue<unsigned char> value("v", "", false, VT_UINT8, 3);
    EXPECT_THAT(Send(value, static_cast<EMsgType>(MSG_POKEV | 0xC000), uint8_t{8}).bytes,
                ElementsAre(0));
    EXPECT_THAT(Send(value, static_cast<EMsgType>(MSG_PEEKV | 0x4000)).bytes, ElementsAre(0, 8));
}

TEST(Value, LeavesOtherMessagesToTheMenu) {
    CDiagMemValue<unsigned char> value("v", "", true, VT_UINT8 | VF_TRACED, 3);
    CDiagMenu menu(TVALUE, "v", "");
    for (const EMsgType type : {MSG_CALL, MSG_START, MSG_STOP}) {
        EXPECT_EQ(Send(value, type).bytes, Send(menu, type).bytes);
    }
    EXPECT_THAT(Send(value, MSG_QUERY).bytes, ElementsAre(MSG_SUCCESS, 0x81, 1));
}

TEST(Value, IsReadWholeWhileAnotherThreadWritesIt) {
    CDiagMemValue<std::string> value("v", "", false, VT_STRING, std::string(200, 'a'));
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) {
            value.Set(std::string(200, i % 2 == 0 ? 'b' : 'a'));
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const std::string text = value.Get();
        EXPECT_EQ(text, std::string(200, text.at(0)));
    }
    writer.join();
}

}  // namespace
