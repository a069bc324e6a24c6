// The SMBus operations as they go over the wire.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/boards/root_bus/tape_bus.h"

namespace {

class RootBusSmbus : public testing::Test {
  protected:
    static constexpr int8_t NO_CHANNEL = -1;

    CTapeBus m_bus;
    std::array<uint8_t, 32> m_block{0x10, 0x20, 0x30};
};

TEST_F(RootBusSmbus, WriteQuickIsAnEmptyWrite) {
    EXPECT_TRUE(m_bus.smb_write_quick(NO_CHANNEL, 0x2A));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {})});
}

TEST_F(RootBusSmbus, ReadQuickIsAnEmptyRead) {
    EXPECT_TRUE(m_bus.smb_read_quick(NO_CHANNEL, 0x2A));
    EXPECT_EQ(m_bus.Tape(), CTape{ReadOf(0x2A, 0)});
}

TEST_F(RootBusSmbus, SendByteIsAPlainWrite) {
    EXPECT_TRUE(m_bus.smb_send_byte(NO_CHANNEL, 0x2A, 0x77));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {0x77})});
}

TEST_F(RootBusSmbus, ReceiveByteIsAPlainRead) {
    m_bus.AnswerRead({0x77});
    uint8_t data = 0;
    EXPECT_TRUE(m_bus.smb_receive_byte(NO_CHANNEL, 0x2A, &data));
    EXPECT_EQ(m_bus.Tape(), CTape{ReadOf(0x2A, 1)});
    EXPECT_EQ(data, 0x77);
}

TEST_F(RootBusSmbus, WriteByteSendsCommandAndData) {
    EXPECT_TRUE(m_bus.smb_write_byte(NO_CHANNEL, 0x2A, 0x05, 0x77));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {0x05, 0x77})});
}

TEST_F(RootBusSmbus, ReadByteReadsBehindTheCommand) {
    m_bus.AnswerRead({0x77});
    uint8_t data = 0;
    EXPECT_TRUE(m_bus.smb_read_byte(NO_CHANNEL, 0x2A, 0x05, &data));
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x2A, {0x05}), ReadOf(0x2A, 1)}));
    EXPECT_EQ(data, 0x77);
}

TEST_F(RootBusSmbus, WriteWordSendsTheLowByteFirst) {
    EXPECT_TRUE(m_bus.smb_write_word(NO_CHANNEL, 0x2A, 0x05, 0xABCD));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {0x05, 0xCD, 0xAB})});
}

TEST_F(RootBusSmbus, ReadWordTakesTheLowByteFirst) {
    m_bus.AnswerRead({0xCD, 0xAB});
    uint16_t data = 0;
    EXPECT_TRUE(m_bus.smb_read_word(NO_CHANNEL, 0x2A, 0x05, &data));
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x2A, {0x05}), ReadOf(0x2A, 2)}));
    EXPECT_EQ(data, 0xABCD);
}

TEST_F(RootBusSmbus, BlockWriteSendsTheCountBeforeTheBytes) {
    EXPECT_TRUE(m_bus.smb_block_write(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {0x05, 3, 0x10, 0x20, 0x30})});
}

TEST_F(RootBusSmbus, BlockWriteMovesThirtyTwoBytes) {
    m_block.back() = 0x99;
    EXPECT_TRUE(m_bus.smb_block_write(NO_CHANNEL, 0x2A, 0x05, 32, m_block.data()));
    ASSERT_EQ(m_bus.Tape().size(), 1U);
    EXPECT_EQ(m_bus.Tape()[0].length, 34U);
    EXPECT_EQ(m_bus.Tape()[0].written.back(), 0x99);
}

TEST_F(RootBusSmbus, BlockReadReadsTheCountAndTheBytes) {
    m_bus.AnswerRead({2, 0xA1, 0xA2});
    EXPECT_TRUE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 2, m_block.data()));
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x2A, {0x05}), ReadOf(0x2A, 3)}));
    EXPECT_EQ(m_block[0], 0xA1);
    EXPECT_EQ(m_block[1], 0xA2);
    EXPECT_EQ(m_block[2], 0x30);
}

// The count is the controller's own business.
TEST_F(RootBusSmbus, BlockReadMovesAsMuchAsTheBusDoes) {
    m_bus.SetMaxTransSize(2);
    m_bus.AnswerRead({2, 0xA1, 0xA2});
    EXPECT_TRUE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 2, m_block.data()));
    EXPECT_FALSE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "bad length 3: this bus moves at most 2 bytes");
    EXPECT_EQ(m_bus.Tapes().size(), 1U);
}

TEST_F(RootBusSmbus, BlockReadRefusesAnotherCountThanAskedFor) {
    m_bus.AnswerRead({5, 0xA1, 0xA2});
    EXPECT_FALSE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 2, m_block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "0x2a announced a block of 5 bytes, not of 2");
    EXPECT_EQ(m_block[0], 0x10);
}

TEST_F(RootBusSmbus, BlockProcessCallWritesABlockAndReadsOneBack) {
    m_bus.AnswerRead({3, 0xA1, 0xA2, 0xA3});
    EXPECT_TRUE(m_bus.smb_block_process_call(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(m_bus.Tape(), (CTape{WriteOf(0x2A, {0x05, 3, 0x10, 0x20, 0x30}), ReadOf(0x2A, 4)}));
    EXPECT_EQ(m_block[0], 0xA1);
    EXPECT_EQ(m_block[2], 0xA3);
}

TEST_F(RootBusSmbus, BlockProcessCallRefusesAnotherCountThanAskedFor) {
    m_bus.AnswerRead({2, 0xA1, 0xA2, 0xA3});
    EXPECT_FALSE(m_bus.smb_block_process_call(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "0x2a announced a block of 2 bytes, not of 3");
    EXPECT_EQ(m_block[0], 0x10);
}

TEST_F(RootBusSmbus, BlockProcessCallCountsTheBytesOfTheBlockInItsErrors) {
    m_bus.Answer(CI2cResult::NoDataAck(0, 4));
    EXPECT_FALSE(m_bus.smb_block_process_call(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "0x2a did not acknowledge data byte 2");
}

TEST_F(RootBusSmbus, BlocksHaveOneToThirtyTwoBytes) {
    for (const uint32_t len : {0U, 33U, 256U, 257U}) {
        const std::string text =
            "bad block length " + std::to_string(len) + ": a block is 1 to 32 bytes";
        EXPECT_FALSE(m_bus.smb_block_write(NO_CHANNEL, 0x2A, 0x05, len, m_block.data()));
        EXPECT_EQ(m_bus.GetLastError(), text);
        EXPECT_FALSE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, len, m_block.data()));
        EXPECT_EQ(m_bus.GetLastError(), text);
        EXPECT_FALSE(m_bus.smb_block_process_call(NO_CHANNEL, 0x2A, 0x05, len, m_block.data()));
        EXPECT_EQ(m_bus.GetLastError(), text);
    }
    EXPECT_TRUE(m_bus.Tapes().empty());
}

TEST_F(RootBusSmbus, RefusesToReadIntoNoBuffer) {
    EXPECT_FALSE(m_bus.smb_receive_byte(NO_CHANNEL, 0x2A, nullptr));
    EXPECT_FALSE(m_bus.smb_read_byte(NO_CHANNEL, 0x2A, 0x05, nullptr));
    EXPECT_FALSE(m_bus.smb_read_word(NO_CHANNEL, 0x2A, 0x05, nullptr));
    EXPECT_FALSE(m_bus.smb_block_write(NO_CHANNEL, 0x2A, 0x05, 1, nullptr));
    EXPECT_FALSE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 1, nullptr));
    EXPECT_FALSE(m_bus.smb_block_process_call(NO_CHANNEL, 0x2A, 0x05, 1, nullptr));
    EXPECT_TRUE(m_bus.Tapes().empty());
}

TEST_F(RootBusSmbus, RefusesAddressesOfMoreThanSevenBits) {
    uint16_t word = 0;
    EXPECT_FALSE(m_bus.smb_write_quick(NO_CHANNEL, 0x80));
    EXPECT_FALSE(m_bus.smb_read_word(NO_CHANNEL, 0x80, 0, &word));
    EXPECT_FALSE(m_bus.smb_block_process_call(NO_CHANNEL, 0x80, 0x05, 1, m_block.data()));
    EXPECT_EQ(m_bus.GetLastError(), "bad address 0x80: 7 bits at most");
    EXPECT_TRUE(m_bus.Tapes().empty());
}

TEST_F(RootBusSmbus, LeavesTheDestinationAloneWhenTheReadFails) {
    uint8_t byte = 0x42;
    uint16_t word = 0x4242;
    for (int i = 0; i < 3; ++i) {
        m_bus.Answer(CI2cResult::NoAddrAck(0));
    }
    EXPECT_FALSE(m_bus.smb_receive_byte(NO_CHANNEL, 0x2A, &byte));
    EXPECT_FALSE(m_bus.smb_read_word(NO_CHANNEL, 0x2A, 0x05, &word));
    EXPECT_FALSE(m_bus.smb_block_read(NO_CHANNEL, 0x2A, 0x05, 3, m_block.data()));
    EXPECT_EQ(byte, 0x42);
    EXPECT_EQ(word, 0x4242);
    EXPECT_EQ(m_block[0], 0x10);
}

TEST_F(RootBusSmbus, IgnoresTheChannel) {
    EXPECT_TRUE(m_bus.smb_write_byte(7, 0x2A, 0x05, 0x77));
    EXPECT_EQ(m_bus.Tape(), CTape{WriteOf(0x2A, {0x05, 0x77})});
}

}  // namespace
