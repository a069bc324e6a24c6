// What "trans" hands to its bus and what it shows of the result.
#include <algorithm>

#include "tests/i2c/trans_test.h"

namespace {

class I2cTransTransfer : public CTransTest {
  protected:
    // What was logged behind the announcement of the transfer.
    CLines LinesBehindTheTransfer() const {
        const CLines lines = m_log.Lines();
        const auto transfer = std::find_if(lines.begin(), lines.end(), [](const auto& line) {
            return line.second.find(": transfer  dev addr") != std::string::npos;
        });
        EXPECT_NE(transfer, lines.end());
        return transfer == lines.end() ? lines : CLines(transfer + 1, lines.end());
    }

    // The rows of a read of `count` bytes 0, 1, 2, ...
    std::string RowsOf(uint8_t count) {
        m_bus.Expect({.saddr = 0x50, .read = true, .data = Counting({}, 0, count)});
        m_log.Clear();
        EXPECT_EQ(Trans("rd", {0x50, 0, count}).bytes, Bytes{SUCCESS});
        std::string rows;
        for (const auto& [word, text] : LinesBehindTheTransfer()) {
            EXPECT_EQ(word, 0xB0U);
            rows += text;
        }
        return rows;
    }
};

// The record

TEST_F(I2cTransTransfer, FillsARecordForARead) {
    m_bus.Answer({0x50});
    Trans("rd", {0x50, 1, 0xAB, 4});
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x50 esaddr=0 cmd_sel=1 baddr_sel=0 cmd=0xab baddr=0 data=set tsize=4 dir=1 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=-1 errmsg=''");
}

TEST_F(I2cTransTransfer, FillsARecordForAWrite) {
    m_bus.Answer({0x51});
    Trans("wr", {0x51, 0, 2, 0x11, 0x22});
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x51 esaddr=0 cmd_sel=0 baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=2 dir=0 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=-1 errmsg=''");
}

TEST_F(I2cTransTransfer, PutsTheSecondCommandByteIntoTheUpperHalf) {
    m_bus.Answer({0x52});
    OutputOf([this] { Trans("rd", {0x52, 2, 0xFE, 0xDC, 16}); });
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x52 esaddr=0 cmd_sel=2 baddr_sel=0 cmd=0xdcfe baddr=0 data=set tsize=16 "
              "dir=1 xfer=0 rpec_en=0 wpec_en=0 switch_ch=-1 errmsg=''");
}

TEST_F(I2cTransTransfer, GivesABufferEvenToATransferWithoutData) {
    m_bus.Answer({0x50});
    Trans("wr", {0x50});
    ASSERT_EQ(m_bus.Seen().size(), 1U);
    EXPECT_EQ(Describe(m_bus.Seen()[0]),
              "saddr=0x50 esaddr=0 cmd_sel=0 baddr_sel=0 cmd=0x0 baddr=0 data=set tsize=0 dir=0 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=-1 errmsg=''");
}

TEST_F(I2cTransTransfer, CarriesTheBytesOfAWriteInOrder) {
    for (const uint8_t count : Bytes{0, 1, 2, 31, 32}) {
        m_bus.Expect({.saddr = 0x50, .data = Counting({}, 0x80, count)});
        EXPECT_EQ(Trans("wr", Counting({0x50, 0, count}, 0x80, count)).bytes, Bytes{SUCCESS});
    }
    EXPECT_EQ(m_bus.Seen().size(), 5U);
}

TEST_F(I2cTransTransfer, GivesReadsABufferOf32Bytes) {
    m_bus.Answer({0x50});
    m_bus.OnTransfer([](const CI2cXfrReq& req) { std::fill_n(req.data, 32, uint8_t{0xEE}); });

    EXPECT_EQ(Trans("rd", {0x50, 0, 32}).bytes, Bytes{SUCCESS});

    const CLines lines = LinesBehindTheTransfer();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Print(" ee")), 32);
}

TEST_F(I2cTransTransfer, ShowsZerosWhereTheBusLeftTheBufferAlone) {
    m_bus.Answer({0x50});
    EXPECT_EQ(Trans("rd", {0x50, 0, 32}).bytes, Bytes{SUCCESS});
    const CLines lines = LinesBehindTheTransfer();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Print("  0")), 32);
}

TEST_F(I2cTransTransfer, TransfersOnceAndToAnyAddress) {
    m_bus.Answer({0x00, 0xFF});
    EXPECT_EQ(Trans("rd", {0x00, 0, 1}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Trans("wr", {0xFF, 0, 1, 0x11}).bytes, Bytes{SUCCESS});
    ASSERT_EQ(m_bus.Seen().size(), 2U);
    EXPECT_EQ(m_bus.Seen()[0].saddr, 0x00);
    EXPECT_EQ(m_bus.Seen()[1].saddr, 0xFF);
}

TEST_F(I2cTransTransfer, IsAnnouncedBeforeItHappens) {
    CLines before;
    m_bus.OnTransfer([&](const CI2cXfrReq&) { before = m_log.Lines(); });
    Trans("rd", {0x50, 0, 1});
    ASSERT_FALSE(before.empty());
    EXPECT_EQ(before.back(), Print("(trans:Invoke): transfer  dev addr = 0x50\n"));
}

TEST_F(I2cTransTransfer, LeavesTheAddressListAlone) {
    m_bus.Answer({0x50});
    Trans("rd", {0x50, 0, 1});
    EXPECT_TRUE(m_bus.GetMyDeviceAddrList().empty());
}

// The result

TEST_F(I2cTransTransfer, ShowsNothingOfAFailedRead) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = {1, 2}, .ok = false, .errmsg = "stuck"});
    EXPECT_EQ(Trans("rd", {0x50, 0, 2}).bytes, Bytes{FAIL});
    EXPECT_TRUE(LinesBehindTheTransfer().empty());
}

TEST_F(I2cTransTransfer, ShowsNothingOfAFailedWrite) {
    m_bus.Expect({.saddr = 0x50, .data = {7}, .ok = false, .errmsg = "stuck"});
    EXPECT_EQ(Trans("wr", {0x50, 0, 1, 7}).bytes, Bytes{FAIL});
    EXPECT_TRUE(LinesBehindTheTransfer().empty());
}

TEST_F(I2cTransTransfer, ShowsNothingOfAWrite) {
    m_bus.Expect({.saddr = 0x50, .data = {7}});
    EXPECT_EQ(Trans("wr", {0x50, 0, 1, 7}).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(LinesBehindTheTransfer().empty());
}

TEST_F(I2cTransTransfer, ShowsFourBytesBehindACommandByte) {
    m_bus.Expect(
        {.saddr = 0x50, .read = true, .cmd_sel = 1, .cmd = 0x00, .data = {0x92, 0x13, 0x0B, 0x03}});

    EXPECT_EQ(Trans("rd", {0x50, 1, 0x00, 4}).bytes, Bytes{SUCCESS});

    const CLines expected = {
        Print("I2C: trans type = rd\n"),
        Print("I2C: dev addr = 0x50\n"),
        Print("I2C: cmd size = 1\n"),
        Print("I2C: cmd[0] = 0x0\n"),
        Print("I2C: data size = 4\n"),
        Print("(trans:Invoke): transfer  dev addr = 0x50\n"),
        Print("----------- 00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F\n"),
        Print("data 0-15: "),
        Print(" 92"),
        Print(" 13"),
        Print("  b"),
        Print("  3"),
        Print(" \n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
}

TEST_F(I2cTransTransfer, SendsEachPieceOfTheRowsOnItsOwn) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = Counting({}, 0xF0, 9)});
    Trans("rd", {0x50, 0, 9});
    const CLines expected = {
        Print("----------- 00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F\n"),
        Print("data 0-15: "),
        Print(" f0"),
        Print(" f1"),
        Print(" f2"),
        Print(" f3"),
        Print(" f4"),
        Print(" f5"),
        Print(" f6"),
        Print(" f7"),
        Print("  "),
        Print(" f8"),
        Print(" \n"),
    };
    EXPECT_EQ(LinesBehindTheTransfer(), expected);
}

const std::string HEAD = "----------- 00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F\n";
const std::string ROW_0 = "data 0-15:   0  1  2  3  4  5  6  7    8  9  a  b  c  d  e  f \n";

TEST_F(I2cTransTransfer, ShowsUpTo16BytesInOneRowWithAGapBehindTheEighth) {
    EXPECT_EQ(RowsOf(0), HEAD + "data 0-15:  \n");
    EXPECT_EQ(RowsOf(1), HEAD + "data 0-15:   0 \n");
    EXPECT_EQ(RowsOf(7), HEAD + "data 0-15:   0  1  2  3  4  5  6 \n");
    EXPECT_EQ(RowsOf(8), HEAD + "data 0-15:   0  1  2  3  4  5  6  7   \n");
    EXPECT_EQ(RowsOf(9), HEAD + "data 0-15:   0  1  2  3  4  5  6  7    8 \n");
    EXPECT_EQ(RowsOf(15), HEAD + "data 0-15:   0  1  2  3  4  5  6  7    8  9  a  b  c  d  e \n");
    EXPECT_EQ(RowsOf(16), HEAD + ROW_0);
}

TEST_F(I2cTransTransfer, ShowsMoreThan16BytesInTwoRowsWithAGapBehindTheEighthOfEach) {
    EXPECT_EQ(RowsOf(17), HEAD + ROW_0 + "data 16-31: 10 \n");
    EXPECT_EQ(RowsOf(23), HEAD + ROW_0 + "data 16-31: 10 11 12 13 14 15 16 \n");
    EXPECT_EQ(RowsOf(24), HEAD + ROW_0 + "data 16-31: 10 11 12 13 14 15 16 17   \n");
    EXPECT_EQ(RowsOf(25), HEAD + ROW_0 + "data 16-31: 10 11 12 13 14 15 16 17   18 \n");
    EXPECT_EQ(RowsOf(31),
              HEAD + ROW_0 + "data 16-31: 10 11 12 13 14 15 16 17   18 19 1a 1b 1c 1d 1e \n");
    EXPECT_EQ(RowsOf(32),
              HEAD + ROW_0 + "data 16-31: 10 11 12 13 14 15 16 17   18 19 1a 1b 1c 1d 1e 1f \n");
}

// Only a write is held to what fits the two rows.
TEST_F(I2cTransTransfer, ReadsMoreThan32BytesButShowsOnlyTheFirst32) {
    const std::string rows = RowsOf(32);
    for (const uint8_t count : Bytes{33, 34, 40, 41, 48, 49, 64, 127, 128, 254, 255}) {
        EXPECT_EQ(RowsOf(count), rows);
        EXPECT_EQ(m_bus.Seen().back().tsize, count);
    }
}

TEST_F(I2cTransTransfer, HasRoomForEveryByteThatALongReadAsksFor) {
    m_bus.Answer({0x50});
    m_bus.OnTransfer(
        [](const CI2cXfrReq& req) { std::fill_n(req.data, req.tsize, uint8_t{0xEE}); });

    EXPECT_EQ(Trans("rd", {0x50, 0, 255}).bytes, Bytes{SUCCESS});

    EXPECT_EQ(m_log.Lines()[1], Print("I2C: dev addr = 0x50\n"));
    const CLines lines = LinesBehindTheTransfer();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), Print(" ee")), 32);
}

TEST_F(I2cTransTransfer, SendsEachPieceOfTheSecondRowOnItsOwn) {
    m_bus.Expect({.saddr = 0x50, .read = true, .data = Counting({}, 0, 25)});
    Trans("rd", {0x50, 0, 25});
    const CLines lines = LinesBehindTheTransfer();
    // Head, label, 16 bytes, a gap and the end of the first row come before.
    ASSERT_EQ(lines.size(), 20U + 12);
    const CLines expected = {
        Print("data 16-31:"), Print(" 10"), Print(" 11"), Print(" 12"), Print(" 13"), Print(" 14"),
        Print(" 15"),         Print(" 16"), Print(" 17"), Print("  "),  Print(" 18"), Print(" \n"),
    };
    EXPECT_EQ(CLines(lines.begin() + 20, lines.end()), expected);
}

// Standard output

TEST_F(I2cTransTransfer, WritesATwoByteCommandToStandardOutput) {
    m_bus.Answer({0x50});
    const std::string output = OutputOf([this] { Trans("rd", {0x50, 2, 0x12, 0x34, 1}); });
    EXPECT_EQ(output, "(trans:Invoke): cmd[0] = 0x12 cmd[1] = 0x34 16-command = 0x3412\n");
}

TEST_F(I2cTransTransfer, WritesATwoByteCommandOfAWriteOrAFailedTransferToo) {
    const std::string output = OutputOf([this] {
        EXPECT_EQ(Trans("wr", {0x50, 2, 0xFF, 0x00, 1, 0x11}).bytes, Bytes{FAIL});
    });
    EXPECT_EQ(output, "(trans:Invoke): cmd[0] = 0xff cmd[1] = 0x0 16-command = 0xff\n");
}

TEST_F(I2cTransTransfer, WritesMissingBytesOfATwoByteCommandAs0) {
    EXPECT_EQ(OutputOf([this] {
                  Trans("rd", {0x50, 2, 0x12});
              }),
              "(trans:Invoke): cmd[0] = 0x12 cmd[1] = 0x0 16-command = 0x12\n");
    EXPECT_EQ(OutputOf([this] {
                  Trans("rd", {0x50, 2});
              }),
              "(trans:Invoke): cmd[0] = 0x0 cmd[1] = 0x0 16-command = 0x0\n");
}

TEST_F(I2cTransTransfer, WritesNothingToStandardOutputWithAShorterCommand) {
    m_bus.Answer({0x50});
    EXPECT_EQ(OutputOf([this] {
                  Trans("rd", {0x50});
                  Trans("rd", {0x50, 0, 4});
                  Trans("rd", {0x50, 1, 0x12, 4});
                  Trans("wr", {0x50, 1, 0x12, 1, 0x34});
                  Trans("rd", {0x50, 3, 0x12, 0x34, 4});
              }),
              "");
}

// Puts the log onto standard output, so that both are seen in one order.
class CEchoSink : public ILogSink {
  public:
    CEchoSink() { CDiagLog::Instance().AddSink(*this); }
    ~CEchoSink() override { CDiagLog::Instance().RemoveSink(*this); }
    void Write(const CLogRecord& record) override { std::fputs(record.text.c_str(), stdout); }
};

TEST_F(I2cTransTransfer, WritesATwoByteCommandBetweenItsArgumentsAndTheAnnouncement) {
    const CEchoSink echo;
    const std::string output = OutputOf([this] { Trans("wr", {0x50, 2, 0x12, 0x34, 1, 0x56}); });
    EXPECT_EQ(output,
              "I2C: trans type = wr\n"
              "I2C: dev addr = 0x50\n"
              "I2C: cmd size = 2\n"
              "I2C: cmd[0] = 0x12\n"
              "I2C: cmd[1] = 0x34\n"
              "I2C: data size = 1\n"
              "I2C: data[0] = 0x56\n"
              "(trans:Invoke): cmd[0] = 0x12 cmd[1] = 0x34 16-command = 0x3412\n"
              "(trans:Invoke): transfer  dev addr = 0x50\n");
}

}  // namespace
