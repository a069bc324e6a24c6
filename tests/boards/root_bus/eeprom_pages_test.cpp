// Writes to declared EEPROMs as they go over the wire.
#include "tests/boards/root_bus/eeprom_test.h"
#include "tests/support/fake_clock.h"

namespace {

using RootBusPages = CRootBusEepromTest;

TEST_F(RootBusPages, LeaveAWriteInsideOnePageAlone) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Write1(0x50, 0x08, 8));
    EXPECT_TRUE(Write1(0x50, 0x0D, 3));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {0x08}, 0, 8), Piece(0x50, {0x0D}, 0, 3)}));
}

TEST_F(RootBusPages, CutAWriteAtTheEndOfThePage) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Write1(0x50, 0x0D, 5)) << m_errmsg;
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {0x0D}, 0, 3), Piece(0x50, {0x10}, 3, 5)}));
}

TEST_F(RootBusPages, CutAWriteOfAlignedPagesToo) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Write1(0x50, 0x10, 16));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {0x10}, 0, 8), Piece(0x50, {0x18}, 8, 16)}));
}

TEST_F(RootBusPages, CutTheLongestWriteIntoAllItsPages) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Write1(0x50, 0x01, 255));
    CTapes expected = {Piece(0x50, {0x01}, 0, 7)};
    for (uint8_t page = 1; page < 32; ++page) {
        const size_t first = page * 8U - 1U;
        expected.push_back(Piece(0x50, {static_cast<uint8_t>(page * 8)}, first, first + 8));
    }
    EXPECT_EQ(m_bus.Tapes(), expected);
}

TEST_F(RootBusPages, SendTheHighByteOfTwoAddressBytesFirst) {
    m_bus.DeclareEeprom(AT24C64);
    EXPECT_TRUE(Write2(0x50, 0x12F5, 20));
    EXPECT_EQ(m_bus.Tapes(),
              (CTapes{Piece(0x50, {0x12, 0xF5}, 0, 11), Piece(0x50, {0x13, 0x00}, 11, 20)}));
}

TEST_F(RootBusPages, GoOnAtTheNextSlaveAddressBehindABlock) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x55, 0xFE, 4));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x55, {0xFE}, 0, 2), Piece(0x56, {0x00}, 2, 4)}));
}

TEST_F(RootBusPages, GoOnAtTheNextSlaveAddressOfALargePart) {
    m_bus.DeclareEeprom(AT24C1024);
    EXPECT_TRUE(Write2(0x50, 0xFFFE, 4));
    EXPECT_EQ(m_bus.Tapes(),
              (CTapes{Piece(0x50, {0xFF, 0xFE}, 0, 2), Piece(0x51, {0x00, 0x00}, 2, 4)}));
}

TEST_F(RootBusPages, TakeAddressBitsAboveTheAddressByteToTheSlaveAddress) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x54, 0x0310, 2));
    EXPECT_TRUE(Write1(0x55, 0x0210, 2));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x57, {0x10}, 0, 2), Piece(0x57, {0x10}, 0, 2)}));
}

TEST_F(RootBusPages, TakeTheAddressBitsOfReadsAndOfBareAddressesToo) {
    m_bus.DeclareEeprom(AT24C08);
    CI2cXfrReq read = Request(0x54, 1, 0x01FC, 8);
    read.dir = 1;
    EXPECT_TRUE(Trans(read));
    EXPECT_TRUE(Write1(0x54, 0x02AA, 0));
    EXPECT_EQ(m_bus.Tapes(),
              (CTapes{{WriteOf(0x55, {0xFC}), ReadOf(0x55, 8)}, {WriteOf(0x56, {0xAA})}}));
}

TEST_F(RootBusPages, DeliverWhatWasReadAtAnotherSlaveAddress) {
    m_bus.DeclareEeprom(AT24C08);
    m_bus.AnswerRead({0xA1, 0xA2});
    CI2cXfrReq read = Request(0x54, 1, 0x0100, 2);
    read.dir = 1;
    EXPECT_TRUE(Trans(read));
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
}

TEST_F(RootBusPages, NeverCutARead) {
    m_bus.DeclareEeprom(AT24C02);
    CI2cXfrReq read = Request(0x50, 1, 0x0D, 255);
    read.dir = 1;
    EXPECT_TRUE(Trans(read));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{{WriteOf(0x50, {0x0D}), ReadOf(0x50, 255)}}));
}

TEST_F(RootBusPages, LeaveAWriteThatRunsPastTheEndAsItIs) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x57, 0xFE, 4));
    EXPECT_EQ(m_bus.Tapes(), CTapes{Piece(0x57, {0xFE}, 0, 4)});
}

TEST_F(RootBusPages, CutAWriteThatEndsWithThePart) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x57, 0xEC, 20));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x57, {0xEC}, 0, 4), Piece(0x57, {0xF0}, 4, 20)}));
}

TEST_F(RootBusPages, RefuseAnAddressBeyondThePart) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_FALSE(Write1(0x54, 0x0400, 1));
    EXPECT_EQ(m_errmsg, "the EEPROM at 0x54 ends at 0x03ff: it has no address 0x0400");
    EXPECT_FALSE(Write1(0x57, 0x0100, 1));
    EXPECT_EQ(m_errmsg, "the EEPROM at 0x54 ends at 0x03ff: it has no address 0x0400");
    CI2cXfrReq read = Request(0x55, 1, 0xFFFF, 1);
    read.dir = 1;
    EXPECT_FALSE(Trans(read));
    EXPECT_EQ(m_errmsg, "the EEPROM at 0x54 ends at 0x03ff: it has no address 0x100ff");
    EXPECT_EQ(m_bus.GetLastError(), m_errmsg);
    EXPECT_TRUE(m_bus.Tapes().empty());
}

TEST_F(RootBusPages, SendTheLowByteAloneToAPartOfOneSlaveAddress) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Write1(0x50, 0x010D, 5));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {0x0D}, 0, 3), Piece(0x50, {0x10}, 3, 5)}));
}

// What is no access by memory address of that part.
TEST_F(RootBusPages, LeaveOtherNumbersOfCommandBytesAlone) {
    m_bus.DeclareEeprom(AT24C02);
    EXPECT_TRUE(Trans(Request(0x50, 0, 0, 20)));
    EXPECT_TRUE(Trans(Request(0x50, 2, 0xD00D, 20)));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {}, 0, 20), Piece(0x50, {0x0D, 0xD0}, 0, 20)}));
}

TEST_F(RootBusPages, LeaveOtherAddressesAlone) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x53, 0x0D, 20));
    EXPECT_TRUE(Write1(0x58, 0x0D, 20));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x53, {0x0D}, 0, 20), Piece(0x58, {0x0D}, 0, 20)}));
}

TEST_F(RootBusPages, LeaveRecordsWithPacketErrorCheckingAlone) {
    m_bus.DeclareEeprom(AT24C08);
    CI2cXfrReq write = Request(0x54, 1, 0x010D, 20);
    write.wpec_en = 1;
    EXPECT_TRUE(Trans(write));
    ASSERT_EQ(m_bus.Tape().size(), 1U);
    EXPECT_EQ(m_bus.Tape()[0].addr, 0x54);
    EXPECT_EQ(m_bus.Tape()[0].length, 1U + 20U + 1U);
    EXPECT_EQ(m_bus.Tape()[0].written[0], 0x0D);

    CI2cXfrReq read = Request(0x54, 1, 0x010D, 20);
    read.dir = 1;
    read.rpec_en = 1;
    EXPECT_FALSE(Trans(read)) << "the zeros that come back are no packet";
    EXPECT_EQ(m_bus.Tapes().back(), (CTape{WriteOf(0x54, {0x0D}), ReadOf(0x54, 21)}));
}

TEST_F(RootBusPages, CutAWriteWhateverItSaysOfCheckingReads) {
    m_bus.DeclareEeprom(AT24C02);
    CI2cXfrReq write = Request(0x50, 1, 0x0D, 5);
    write.rpec_en = 1;
    EXPECT_TRUE(Trans(write));
    EXPECT_EQ(m_bus.Tapes(), (CTapes{Piece(0x50, {0x0D}, 0, 3), Piece(0x50, {0x10}, 3, 5)}));
}

TEST_F(RootBusPages, LeaveTheSmbusOperationsAlone) {
    m_bus.DeclareEeprom(AT24C02);
    m_bus.DeclareEeprom(AT24C64);
    EXPECT_TRUE(m_bus.smb_write_word(-1, 0x50, 0x07, 0x2211));
    EXPECT_TRUE(m_bus.smb_block_write(-1, 0x50, 0x1F, 20, m_data.data()));
    EXPECT_EQ(m_bus.Tapes(),
              (CTapes{{WriteOf(0x50, {0x07, 0x11, 0x22})}, Piece(0x50, {0x1F, 20}, 0, 20)}));
}

TEST_F(RootBusPages, AreKeptByTheDirectTransferToo) {
    m_bus.DeclareEeprom(AT24C02);
    CI2cXfrReq req = Request(0x50, 1, 0x0D, 5);
    EXPECT_TRUE(m_bus.DirectI2cTrans(req));
    EXPECT_EQ(m_bus.Tapes().size(), 2U);
}

TEST_F(RootBusPages, LeaveTheRecordAsTheCallerFilledIt) {
    m_bus.DeclareEeprom(AT24C08);
    CI2cXfrReq req = Request(0x54, 1, 0x01FE, 4);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(req.saddr, 0x54);
    EXPECT_EQ(req.cmd, 0x01FE);
    EXPECT_EQ(req.tsize, 4);
    EXPECT_EQ(req.data, m_data.data());
}

TEST_F(RootBusPages, RefuseWhatTheBusRefusesBeforeAnyPiece) {
    m_bus.DeclareEeprom(AT24C02);
    m_bus.SetMaxTransSize(16);
    EXPECT_FALSE(Write1(0x50, 0x0D, 17));
    EXPECT_EQ(m_errmsg, "bad length 17: this bus moves at most 16 bytes");
    CI2cXfrReq req = Request(0x50, 1, 0x0D, 5);
    req.data = nullptr;
    EXPECT_FALSE(Trans(req));
    EXPECT_EQ(m_errmsg, "no buffer for 5 data bytes");
    EXPECT_TRUE(m_bus.Tapes().empty());
}

// The waiting between the pieces.
class RootBusPageCycle : public CRootBusEepromTest {
  protected:
    void Silence(size_t transfers) {
        for (size_t i = 0; i < transfers; ++i) {
            m_bus.Answer(CI2cResult::NoAddrAck(0));
        }
    }
    void Success() { m_bus.Answer(CI2cResult::Ok()); }

    CFakeClock m_clock;
};

TEST_F(RootBusPageCycle, IsWaitedForBeforeEveryPiece) {
    m_bus.DeclareEeprom(AT24C02);
    Success();
    Silence(3);
    Success();
    Silence(4);
    EXPECT_TRUE(Write1(0x50, 0x0D, 15)) << m_errmsg;
    EXPECT_EQ(m_clock.Sleeps(), 7U);
    CTapes expected = {Piece(0x50, {0x0D}, 0, 3)};
    expected.insert(expected.end(), 4, Piece(0x50, {0x10}, 3, 11));
    expected.insert(expected.end(), 5, Piece(0x50, {0x18}, 11, 15));
    EXPECT_EQ(m_bus.Tapes(), expected);
}

TEST_F(RootBusPageCycle, KeepsAPartFromAnsweringAtAllItsAddresses) {
    m_bus.DeclareEeprom(AT24C08);
    EXPECT_TRUE(Write1(0x55, 0x00, 1));
    Silence(3);
    EXPECT_TRUE(Write1(0x57, 0x00, 1));
    EXPECT_EQ(m_clock.Sleeps(), 3U);
    Silence(1);
    EXPECT_FALSE(Write1(0x53, 0x00, 1)) << "another chip is not asked twice";
    EXPECT_EQ(m_clock.Sleeps(), 3U);
}

TEST_F(RootBusPageCycle, IsWaitedForFromOneBlockToTheNext) {
    m_bus.DeclareEeprom(AT24C1024);
    Success();
    Silence(5);
    EXPECT_TRUE(Write2(0x50, 0xFFFE, 4)) << m_errmsg;
    EXPECT_EQ(m_clock.Sleeps(), 5U);
    EXPECT_EQ(m_bus.Tapes().back(), Piece(0x51, {0x00, 0x00}, 2, 4));
}

TEST_F(RootBusPageCycle, IsThatOfTheLargestPartWhereSeveralShareAddresses) {
    m_bus.DeclareEeprom({0x55, 1, 2, 32});
    m_bus.DeclareEeprom(AT24C08);
    m_bus.DeclareEeprom({0x56, 2, 2, 32});
    EXPECT_TRUE(Write1(0x54, 0x00, 1));
    Silence(2);
    EXPECT_TRUE(Write2(0x57, 0x00, 1));
    EXPECT_EQ(m_clock.Sleeps(), 2U);
}

// A write of 0x0d to 0x1b in three pieces.
class RootBusPageFailure : public RootBusPageCycle {
  protected:
    std::string ErrorOf(unsigned int good, CI2cResult result) {
        m_bus.DeclareEeprom(AT24C02);
        for (unsigned int i = 0; i < good; ++i) {
            Success();
        }
        m_bus.Answer(std::move(result));
        EXPECT_FALSE(Write1(0x50, 0x0D, 15));
        EXPECT_EQ(m_bus.Tapes().size(), good + 1) << "no piece follows the one that failed";
        EXPECT_EQ(m_bus.GetLastError(), m_errmsg);
        return m_errmsg;
    }
};

TEST_F(RootBusPageFailure, OfTheFirstPieceTellsThatTheRestWasNotTried) {
    EXPECT_EQ(ErrorOf(0, CI2cResult::NoAddrAck(0)),
              "no acknowledge from 0x50; memory 0x000d to 0x000f failed, 0x0010 to 0x001b was not "
              "tried");
}

TEST_F(RootBusPageFailure, InTheMiddleTellsWhatIsWritten) {
    EXPECT_EQ(ErrorOf(1, CI2cResult::NoDataAck(0, 3)),
              "0x50 did not acknowledge data byte 2; memory 0x000d to 0x000f is written, 0x0010 to "
              "0x0017 failed, 0x0018 to 0x001b was not tried");
}

TEST_F(RootBusPageFailure, OfTheLastPieceTellsThatAllBeforeIsWritten) {
    EXPECT_EQ(ErrorOf(2, CI2cResult::BusStuck()),
              "bus stuck low; memory 0x000d to 0x0017 is written, 0x0018 to 0x001b failed");
}

TEST_F(RootBusPageFailure, OfAPartThatStaysSilentTellsHowOftenItWasAsked) {
    m_bus.DeclareEeprom(AT24C02);
    Success();
    Silence(26);
    EXPECT_FALSE(Write1(0x50, 0x0D, 5));
    EXPECT_EQ(m_errmsg,
              "no acknowledge from 0x50, asked 25 more times after a write; memory 0x000d to "
              "0x000f is written, 0x0010 to 0x0011 failed");
}

TEST_F(RootBusPageFailure, OfAWriteInOnePieceReadsAsEver) {
    m_bus.DeclareEeprom(AT24C02);
    Silence(1);
    EXPECT_FALSE(Write1(0x50, 0x08, 8));
    EXPECT_EQ(m_errmsg, "no acknowledge from 0x50");
}

TEST_F(RootBusPageFailure, IsForgottenByTheNextSuccess) {
    ErrorOf(1, CI2cResult::BusStuck());
    EXPECT_TRUE(Write1(0x50, 0x0D, 15));
    EXPECT_EQ(m_errmsg, "");
    EXPECT_EQ(m_bus.GetLastError(), "");
}

}  // namespace
