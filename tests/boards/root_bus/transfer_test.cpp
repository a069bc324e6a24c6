// How a transfer record becomes messages on the wire.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/boards/root_bus/tape_bus.h"

namespace {

class RootBusTransfer : public testing::Test {
  protected:
    CI2cXfrReq Request(uint8_t dir, uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        CI2cXfrReq req;
        req.saddr = 0x50;
        req.dir = dir;
        req.cmd_sel = cmd_sel;
        req.cmd = cmd;
        req.data = m_data.data();
        req.tsize = tsize;
        return req;
    }
    CI2cXfrReq Read(uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        return Request(1, cmd_sel, cmd, tsize);
    }
    CI2cXfrReq Write(uint8_t cmd_sel, uint16_t cmd, uint8_t tsize) {
        return Request(0, cmd_sel, cmd, tsize);
    }

    CTapeBus m_bus;
    std::array<uint8_t, 255> m_data{0x11, 0x22, 0x33};
};

TEST_F(RootBusTransfer, WritesDataAlone) {
    CI2cXfrReq req = Write(0, 0xFFFF, 3);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x11, 0x22, 0x33})});
}

TEST_F(RootBusTransfer, WritesOneCommandByteAndDataInOneMessage) {
    CI2cXfrReq req = Write(1, 0xAB12, 2);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, 0x11, 0x22})});
}

TEST_F(RootBusTransfer, WritesTheLowByteOfTwoCommandBytesFirst) {
    CI2cXfrReq req = Write(2, 0xAB12, 1);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, 0xAB, 0x11})});
}

TEST_F(RootBusTransfer, WritesTheLongestDataBehindTwoCommandBytes) {
    m_data.back() = 0x99;
    CI2cXfrReq req = Write(2, 0x0000, 255);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    ASSERT_EQ(m_bus.Tape().size(), 1U);
    EXPECT_EQ(m_bus.Tape()[0].length, 257U);
    EXPECT_EQ(m_bus.Tape()[0].written.back(), 0x99);
}

TEST_F(RootBusTransfer, ReadsWithoutCommandAsAPlainRead) {
    m_bus.AnswerRead({0xA1, 0xA2});
    CI2cXfrReq req = Read(0, 0, 2);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{ReadOf(0x50, 2)});
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
    EXPECT_EQ(m_data[2], 0x33);
}

TEST_F(RootBusTransfer, ReadsWithCommandBytesOverARepeatedStart) {
    m_bus.AnswerRead({0xA1});
    CI2cXfrReq req = Read(2, 0xAB12, 1);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x50, {0x12, 0xAB}), ReadOf(0x50, 1)}));
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(RootBusTransfer, ReadOfNothingWithCommandBytesWritesOnlyThem) {
    CI2cXfrReq req = Read(2, 0xAB12, 0);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, 0xAB})});
}

TEST_F(RootBusTransfer, NothingToMoveIsAnEmptyMessageInTheDirectionGiven) {
    CI2cXfrReq read = Read(0, 0, 0);
    CI2cXfrReq write = Write(0, 0, 0);
    read.data = nullptr;
    write.data = nullptr;
    EXPECT_TRUE(m_bus.I2cTrans(read));
    EXPECT_TRUE(m_bus.I2cTrans(write));
    const std::vector<CTape> expected = {{ReadOf(0x50, 0)}, {WriteOf(0x50, {})}};
    EXPECT_EQ(m_bus.Tapes(), expected);
}

TEST_F(RootBusTransfer, IgnoresTheSwitchChannel) {
    CI2cXfrReq req = Write(0, 0, 1);
    req.switch_ch = 5;
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x11})});
}

TEST_F(RootBusTransfer, DirectTransferIsTheSameTransfer) {
    CI2cXfrReq req = Write(1, 0x12, 1);
    EXPECT_TRUE(m_bus.DirectI2cTrans(req));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x50, {0x12, 0x11})});
}

TEST_F(RootBusTransfer, LeavesTheCallersBufferAloneWhenAReadFails) {
    m_bus.Answer(CI2cResult::NoAddrAck(0));
    CI2cXfrReq req = Read(0, 0, 3);
    EXPECT_FALSE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_data[0], 0x11);
}

// What is refused before anything goes on the wire.
class RootBusRefusal : public RootBusTransfer {
  protected:
    void ExpectRefused(CI2cXfrReq req, const std::string& text) {
        EXPECT_FALSE(m_bus.I2cTrans(req));
        EXPECT_EQ(req.errmsg, text);
        EXPECT_EQ(m_bus.GetLastError(), text);
        EXPECT_TRUE(m_bus.Tapes().empty());
    }
};

TEST_F(RootBusRefusal, MoreThanTwoCommandBytes) {
    ExpectRefused(Read(3, 0, 1), "bad command size 3: 2 bytes at most");
}

TEST_F(RootBusRefusal, MoreDataThanTheBusMoves) {
    m_bus.SetMaxTransSize(32);
    ExpectRefused(Write(0, 0, 33), "bad length 33: this bus moves at most 32 bytes");
}

TEST_F(RootBusRefusal, NotOfTheLongestTransferTheBusMoves) {
    m_bus.SetMaxTransSize(32);
    CI2cXfrReq req = Write(0, 0, 32);
    EXPECT_TRUE(m_bus.I2cTrans(req));
    EXPECT_EQ(m_bus.Tapes().size(), 1U);
}

TEST_F(RootBusRefusal, DataWithoutABuffer) {
    CI2cXfrReq req = Write(0, 0, 4);
    req.data = nullptr;
    ExpectRefused(req, "no buffer for 4 data bytes");
}

TEST_F(RootBusRefusal, AnAddressOfMoreThanSevenBits) {
    CI2cXfrReq req = Write(0, 0, 1);
    req.saddr = 0x80;
    ExpectRefused(req, "bad address 0x80: 7 bits at most");
}

}  // namespace
