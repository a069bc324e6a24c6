#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "framework/diag_exception.h"
#include "framework/diag_msg.h"
#include "tests/support/bytes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A message that holds `count` bytes already.
COutMsg Filled(size_t count) {
    COutMsg msg(MSG_CALL);
    for (size_t i = 0; i < count; ++i) {
        msg << static_cast<uint8_t>(i);
    }
    return msg;
}

TEST(OutMsg, BeginsEmptyAndSuccessful) {
    const COutMsg out(MSG_CALL);
    EXPECT_EQ(out.GetHeader().len, 0);
    EXPECT_EQ(out.GetRespCode(), MSG_SUCCESS);
}

TEST(OutMsg, NamesTypeAddresseeAndSenderInItsHeader) {
    const COutMsg out(MSG_PEEKV, 0x01020304, 0x05060708);
    EXPECT_EQ(out.GetHeader().type, MSG_PEEKV);
    EXPECT_EQ(out.GetHeader().to, 0x01020304U);
    EXPECT_EQ(out.GetHeader().from, 0x05060708U);
    static_assert(sizeof(CMsgHdr::type) == 2 && sizeof(CMsgHdr::len) == 2);
}

TEST(OutMsg, AppendsEveryWidthWithItsHighestByteFirst) {
    COutMsg out;
    out << uint8_t{0x01};
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x01));
    out << uint16_t{0x0203};
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x01, 0x02, 0x03));
    out << uint32_t{0x84050607};
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x01, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07));
    out.Clear();
    out << uint64_t{0xF102030405060708};
    EXPECT_THAT(PayloadOf(out), ElementsAre(0xF1, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08));
}

TEST(OutMsg, AppendsATextBehindItsLength) {
    COutMsg out;
    out << "abc";
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x00, 0x03, 'a', 'b', 'c'));
}

TEST(OutMsg, AppendsAStringAsItAppendsAText) {
    COutMsg text;
    COutMsg string;
    text << "show-spd-info";
    string << std::string("show-spd-info");
    EXPECT_EQ(PayloadOf(text), PayloadOf(string));
}

TEST(OutMsg, KeepsZeroBytesInsideAString) {
    COutMsg out;
    out << std::string("a\0b", 3);
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x00, 0x03, 'a', 0x00, 'b'));
}

TEST(OutMsg, AppendsAnEmptyTextAsItsLengthAlone) {
    COutMsg out;
    out << "" << std::string();
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x00, 0x00, 0x00, 0x00));
}

TEST(OutMsg, WritesLongTextsWithBothBytesOfTheirLength) {
    COutMsg out;
    out << std::string(0x0302, 'x');
    ASSERT_EQ(out.GetHeader().len, 0x0304);
    EXPECT_EQ(out.GetPayload()[0], 0x03);
    EXPECT_EQ(out.GetPayload()[1], 0x02);
    EXPECT_EQ(out.GetPayload()[0x0303], 'x');
}

TEST(OutMsg, HoldsExactly1024Bytes) {
    COutMsg out = Filled(1024);
    EXPECT_EQ(out.GetHeader().len, 1024);
    EXPECT_THROW(out << uint8_t{0xEE}, CDiagException);
    EXPECT_EQ(PayloadOf(out), PayloadOf(Filled(1024)));
}

TEST(OutMsg, RefusesAnIntegerThatDoesNotFitAsAWhole) {
    for (const size_t width : {2U, 4U, 8U}) {
        SCOPED_TRACE(width);
        const size_t filled = 1024 - width + 1;
        COutMsg out = Filled(filled);
        if (width == 2) {
            EXPECT_THROW(out << uint16_t{0xEEEE}, CDiagException);
        } else if (width == 4) {
            EXPECT_THROW(out << uint32_t{0xEEEEEEEE}, CDiagException);
        } else {
            EXPECT_THROW(out << uint64_t{0xEEEEEEEEEEEEEEEE}, CDiagException);
        }
        EXPECT_EQ(PayloadOf(out), PayloadOf(Filled(filled)));
    }
}

TEST(OutMsg, TakesWhatStillFitsAfterARefusal) {
    COutMsg out = Filled(1022);
    EXPECT_THROW(out << uint32_t{0xEEEEEEEE}, CDiagException);
    out << uint16_t{0x1234};
    ASSERT_EQ(out.GetHeader().len, 1024);
    EXPECT_EQ(out.GetPayload()[1022], 0x12);
    EXPECT_EQ(out.GetPayload()[1023], 0x34);
}

TEST(OutMsg, TakesTheLongestTextThatFits) {
    COutMsg out;
    out << std::string(1022, 'x');
    EXPECT_EQ(out.GetHeader().len, 1024);
}

TEST(OutMsg, RefusesATextThatIsOneByteTooLong) {
    COutMsg out;
    EXPECT_THROW(out << std::string(1023, 'x'), CDiagException);
    EXPECT_THROW(out << std::string(1023, 'x').c_str(), CDiagException);
    EXPECT_EQ(out.GetHeader().len, 0);
}

TEST(OutMsg, RefusesATextWhoseLengthDoesNotFitItsField) {
    COutMsg out;
    EXPECT_THROW(out << std::string(0x10003, 'x'), CDiagException);
    EXPECT_THAT(PayloadOf(out), IsEmpty());
}

TEST(OutMsg, RefusesEvenAnEmptyTextWhenOnlyOneByteIsLeft) {
    COutMsg out = Filled(1023);
    EXPECT_THROW(out << "", CDiagException);
    EXPECT_EQ(PayloadOf(out), PayloadOf(Filled(1023)));
}

TEST(OutMsg, IsEmptyAfterClearAndKeepsItsResponseCode) {
    COutMsg out(MSG_CALL, 7);
    out << uint32_t{0x01020304};
    out.SetRespCode(MSG_ERR_PARAM);
    out.Clear();
    EXPECT_EQ(out.GetHeader().len, 0);
    EXPECT_EQ(out.GetHeader().to, 7U);
    EXPECT_EQ(out.GetRespCode(), MSG_ERR_PARAM);
    out << uint8_t{0x55};
    EXPECT_THAT(PayloadOf(out), ElementsAre(0x55));
}

TEST(OutMsg, HasRoomForEverythingAgainAfterClear) {
    COutMsg out = Filled(1024);
    out.Clear();
    out << std::string(1022, 'x');
    EXPECT_EQ(out.GetHeader().len, 1024);
}

TEST(InMsg, ReadsEveryWidthWithItsHighestByteFirst) {
    COutMsg out;
    for (const uint8_t byte : CByteVector{0x01, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07, 0xF1, 0x02,
                                          0x03, 0x04, 0x05, 0x06, 0x07, 0x08}) {
        out << byte;
    }
    CInMsg in(out);
    uint8_t u8 = 0;
    uint16_t u16 = 0;
    uint32_t u32 = 0;
    uint64_t u64 = 0;
    in >> u8 >> u16 >> u32 >> u64;
    EXPECT_EQ(u8, 0x01);
    EXPECT_EQ(u16, 0x0203);
    EXPECT_EQ(u32, 0x84050607U);
    EXPECT_EQ(u64, 0xF102030405060708U);
}

TEST(InMsg, CountsDownTheUnreadBytes) {
    COutMsg out;
    out << uint8_t{1} << uint16_t{2} << uint32_t{3} << uint64_t{4} << "five";
    CInMsg in(out);
    uint8_t u8 = 0;
    uint16_t u16 = 0;
    uint32_t u32 = 0;
    uint64_t u64 = 0;
    std::string text;
    EXPECT_EQ(in.GetLen(), 21U);
    in >> u8;
    EXPECT_EQ(in.GetLen(), 20U);
    in >> u16;
    EXPECT_EQ(in.GetLen(), 18U);
    in >> u32;
    EXPECT_EQ(in.GetLen(), 14U);
    in >> u64;
    EXPECT_EQ(in.GetLen(), 6U);
    in >> text;
    EXPECT_EQ(in.GetLen(), 0U);
    EXPECT_EQ(text, "five");
}

TEST(InMsg, ReadsTheTextsThatWereWritten) {
    const std::string zeros("a\0b\0", 4);
    const std::string high("\xFF\x80", 2);
    COutMsg out;
    out << "" << zeros << "probe" << high << std::string(900, 'y');
    CInMsg in(out);
    std::string text = "not empty";
    in >> text;
    EXPECT_EQ(text, "");
    in >> text;
    EXPECT_EQ(text, zeros);
    in >> text;
    EXPECT_EQ(text, "probe");
    in >> text;
    EXPECT_EQ(text, high);
    in >> text;
    EXPECT_EQ(text, std::string(900, 'y'));
}

template <class T>
class InMsgInteger : public testing::Test {};
using Integers = testing::Types<uint8_t, uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(InMsgInteger, Integers);

TYPED_TEST(InMsgInteger, IsNotReadFromAnEmptyMessage) {
    CInMsg in{COutMsg()};
    TypeParam value = 0;
    EXPECT_THROW(in >> value, CDiagException);
    EXPECT_EQ(in.GetLen(), 0U);
}

TYPED_TEST(InMsgInteger, IsNotReadWhenOneByteIsMissingAndTheBytesStayReadable) {
    COutMsg out;
    out << uint8_t{0x77};
    for (size_t i = 0; i + 1 < sizeof(TypeParam); ++i) {
        out << static_cast<uint8_t>(i);
    }
    CInMsg in(out);
    uint8_t byte = 0;
    in >> byte;
    TypeParam value = 0;
    EXPECT_THROW(in >> value, CDiagException);
    EXPECT_EQ(in.GetLen(), sizeof(TypeParam) - 1);
    for (size_t i = 0; i + 1 < sizeof(TypeParam); ++i) {
        in >> byte;
        EXPECT_EQ(byte, i);
    }
    EXPECT_EQ(in.GetLen(), 0U);
}

TEST(InMsg, RefusesATextWithoutAWholeLengthField) {
    COutMsg out;
    out << uint8_t{0x42};
    CInMsg in(out);
    std::string text;
    EXPECT_THROW(in >> text, CDiagException);
    EXPECT_EQ(in.GetLen(), 1U);
    uint8_t byte = 0;
    in >> byte;
    EXPECT_EQ(byte, 0x42);
}

TEST(InMsg, RefusesATextThatIsLongerThanWhatIsLeft) {
    COutMsg out;
    out << uint16_t{4} << uint8_t{'a'} << uint8_t{'b'} << uint8_t{'c'};
    CInMsg in(out);
    std::string text;
    EXPECT_THROW(in >> text, CDiagException);
    EXPECT_EQ(in.GetLen(), 5U);
    uint16_t length = 0;
    in >> length;
    EXPECT_EQ(length, 4);
}

TEST(InMsg, RefusesATextThatIsLongerThanAnyMessage) {
    COutMsg out;
    out << uint16_t{0xFFFF} << uint32_t{0};
    CInMsg in(out);
    std::string text;
    EXPECT_THROW(in >> text, CDiagException);
    EXPECT_EQ(in.GetLen(), 6U);
}

TEST(InMsg, DoesNotReadPastTheLengthIntoAnOlderPayload) {
    COutMsg out = Filled(100);
    out.Clear();
    out << uint16_t{0x0102};
    CInMsg in(out);
    uint32_t value = 0;
    EXPECT_THROW(in >> value, CDiagException);
    EXPECT_EQ(in.GetLen(), 2U);
}

TEST(InMsg, ReadsAFullMessageToItsEnd) {
    CInMsg in(Filled(1024));
    EXPECT_EQ(in.GetLen(), 1024U);
    for (size_t i = 0; i < 1024; ++i) {
        uint8_t byte = 0;
        in >> byte;
        ASSERT_EQ(byte, i % 256);
    }
    uint8_t byte = 0;
    EXPECT_THROW(in >> byte, CDiagException);
}

TEST(InMsg, ReadsOneMessageAsOftenAsAsked) {
    COutMsg out;
    out << uint8_t{1} << uint8_t{2};
    CInMsg first(out);
    CInMsg second(out);
    uint8_t byte = 0;
    first >> byte >> byte;
    EXPECT_EQ(second.GetLen(), 2U);
    second >> byte;
    EXPECT_EQ(byte, 1);
}

TEST(InMsg, GoesOnFromWhereItWasCopied) {
    COutMsg out;
    out << uint8_t{1} << uint8_t{2} << uint8_t{3};
    CInMsg in(out);
    uint8_t byte = 0;
    in >> byte;
    CInMsg copy(in);
    in >> byte >> byte;
    EXPECT_EQ(copy.GetLen(), 2U);
    copy >> byte;
    EXPECT_EQ(byte, 2);
}

TEST(InMsg, TellsItsTypeWithoutTheRoutingFlags) {
    for (const unsigned int flags : {0x4000U, 0x8000U, 0xC000U}) {
        const CInMsg in(COutMsg(static_cast<EMsgType>(MSG_POKEV | flags)));
        EXPECT_EQ(in.GetType(), MSG_POKEV);
        EXPECT_EQ(in.GetHeader().type, MSG_POKEV | flags);
    }
}

TEST(MsgHandle, SharesItsBufferWithItsCopies) {
    COutMsg out(MSG_MAIL, 3, 4);
    const CDiagMsg handle = out;
    out << uint16_t{0xABCD};
    EXPECT_THAT(PayloadOf(handle), ElementsAre(0xAB, 0xCD));
    EXPECT_EQ(handle.GetHeader().to, 3U);
    EXPECT_EQ(handle.GetHeader().from, 4U);
}

TEST(MsgHandle, KeepsTheBufferWhenTheMessageIsGone) {
    CDiagMsg handle;
    {
        COutMsg out(MSG_MAIL);
        out << "kept";
        handle = out;
    }
    CInMsg in(handle);
    std::string text;
    in >> text;
    EXPECT_EQ(text, "kept");
}

}  // namespace
