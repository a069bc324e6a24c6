// Adapters that know SMBus operations alone: which one carries which transfer, with what
// in it, and what is refused.
#include <cerrno>

#include "tests/boards/linux/linux_bus_test.h"

namespace {

using CCalls = std::vector<std::string>;

class LinuxBusSmbus : public CLinuxBusTest {
  protected:
    LinuxBusSmbus() { m_dev.functions = SMBUS_FUNCTIONS; }

    // The last call, which is the operation itself.
    std::string Operation() const { return m_dev.calls.empty() ? "" : m_dev.calls.back(); }
    void Only(unsigned long functions) { m_dev.functions = functions; }
};

TEST_F(LinuxBusSmbus, SelectsASlaveOnceForAllItsReads) {
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_TRUE(Read(1, 0x12, 1));
    EXPECT_EQ(m_dev.calls, (CCalls{"slave-force 0x50", "smbus read command 0x00 size 1",
                                   "smbus read command 0x12 size 2 byte 00"}));
}

TEST_F(LinuxBusSmbus, SelectsAnewForAnotherSlave) {
    uint8_t byte = 0;
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_TRUE(Bus().smb_receive_byte(-1, 0x51, &byte));
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_EQ(m_dev.calls, (CCalls{"slave-force 0x50", "smbus read command 0x00 size 1",
                                   "slave-force 0x51", "smbus read command 0x00 size 1",
                                   "slave-force 0x50", "smbus read command 0x00 size 1"}));
}

// The question whose the address is has selected it.
TEST_F(LinuxBusSmbus, SelectsOnlyOnceForAWrite) {
    EXPECT_TRUE(Write(1, 0x12, 1));
    EXPECT_EQ(m_dev.calls, (CCalls{"slave 0x50", "smbus write command 0x12 size 2 byte 11"}));
}

TEST_F(LinuxBusSmbus, SaysWhyASlaveCannotBeSelected) {
    m_dev.selections = {-EINVAL};
    EXPECT_FALSE(Read(0, 0, 1));
    EXPECT_EQ(m_errmsg, "0x50: read 1 byte on /dev/i2c-3: EINVAL (Invalid argument)");
}

TEST_F(LinuxBusSmbus, CarriesQuickCommands) {
    EXPECT_TRUE(Write(0, 0, 0));
    EXPECT_EQ(Operation(), "smbus write command 0x00 size 0");
    EXPECT_TRUE(Read(0, 0, 0));
    EXPECT_EQ(Operation(), "smbus read command 0x00 size 0");
}

TEST_F(LinuxBusSmbus, CarriesSingleBytes) {
    m_dev.bytes = {0xA1};
    EXPECT_TRUE(Write(0, 0, 1));
    EXPECT_EQ(Operation(), "smbus write command 0x11 size 1");
    EXPECT_TRUE(Write(1, 0x44, 0));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 1");
    EXPECT_TRUE(Read(0, 0, 1));
    EXPECT_EQ(Operation(), "smbus read command 0x00 size 1");
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(LinuxBusSmbus, CarriesAByteOfData) {
    m_dev.bytes = {0xA1};
    EXPECT_TRUE(Write(1, 0x44, 1));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 2 byte 11");
    EXPECT_TRUE(Read(1, 0x44, 1));
    EXPECT_EQ(Operation(), "smbus read command 0x44 size 2 byte 00");
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(LinuxBusSmbus, CarriesAWordWithItsLowByteFirst) {
    m_dev.bytes = {0xA1, 0xA2};
    EXPECT_TRUE(Write(1, 0x44, 2));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 3 word 2211");
    EXPECT_TRUE(Write(0, 0, 3));
    EXPECT_EQ(Operation(), "smbus write command 0x11 size 3 word 3322");
    EXPECT_TRUE(Read(1, 0x44, 2));
    EXPECT_EQ(Operation(), "smbus read command 0x44 size 3 word 0000");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
}

TEST_F(LinuxBusSmbus, CarriesBlocksOfI2c) {
    m_dev.bytes = {4, 0xA1, 0xA2, 0xA3, 0xA4};
    EXPECT_TRUE(Write(1, 0x44, 3));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 8 block 03 11 22 33");
    EXPECT_TRUE(Write(2, 0x5544, 3));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 8 block 04 55 11 22 33");
    EXPECT_TRUE(Read(1, 0x44, 4));
    EXPECT_EQ(Operation(), "smbus read command 0x44 size 8 block 04 00 00 00 00");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[3], 0xA4);
}

TEST_F(LinuxBusSmbus, CarriesTheLongestBlockAndNoMore) {
    m_dev.bytes = {32};
    EXPECT_TRUE(Write(1, 0x44, 32));
    EXPECT_TRUE(Read(1, 0x44, 32));
    m_dev.calls.clear();
    EXPECT_FALSE(Read(1, 0x44, 33));
    EXPECT_EQ(
        m_errmsg,
        "bad length 33: /dev/i2c-3 (Bench adapter), which has no I2C_FUNC_I2C, moves at most 32 "
        "bytes");
    EXPECT_FALSE(Write(1, 0x44, 33));
    EXPECT_TRUE(m_dev.calls.empty());
}

TEST_F(LinuxBusSmbus, RefusesABlockThatCameShort) {
    m_dev.bytes = {3, 0xA1, 0xA2, 0xA3};
    EXPECT_FALSE(Read(1, 0x44, 4));
    EXPECT_EQ(m_errmsg, "0x50: write 1 byte, read 4 bytes on /dev/i2c-3: 3 bytes came");
    EXPECT_EQ(m_data[0], 0x11);
}

TEST_F(LinuxBusSmbus, ReadsSmbusBlocksByTheSlavesCount) {
    m_dev.bytes = {2, 0xA1, 0xA2};
    EXPECT_TRUE(Bus().smb_block_read(-1, 0x2A, 0x05, 2, m_data.data()));
    EXPECT_EQ(Operation(), "smbus read command 0x05 size 5 block 00");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[1], 0xA2);
    EXPECT_EQ(m_data[2], 0x33);
}

TEST_F(LinuxBusSmbus, ReadsTheLongestSmbusBlock) {
    m_dev.bytes.assign(33, 0xA1);
    m_dev.bytes[0] = 32;
    EXPECT_TRUE(Bus().smb_block_read(-1, 0x2A, 0x05, 32, m_data.data()));
    EXPECT_EQ(m_data[31], 0xA1);
    EXPECT_EQ(m_data[32], 0);
}

TEST_F(LinuxBusSmbus, RefusesAnotherCountThanWasAskedFor) {
    for (const uint8_t count : {uint8_t{1}, uint8_t{32}}) {
        m_dev.bytes.assign(1U + count, 0xA1);
        m_dev.bytes[0] = count;
        EXPECT_FALSE(Bus().smb_block_read(-1, 0x2A, 0x05, 2, m_data.data()));
        EXPECT_EQ(Bus().GetLastError(),
                  "0x2a announced a block of " + std::to_string(count) + " bytes, not of 2");
        EXPECT_EQ(m_data[0], 0x11);
    }
}

TEST_F(LinuxBusSmbus, WritesSmbusBlocksWithoutBlocksOfI2c) {
    Only(I2C_FUNC_SMBUS_BLOCK_DATA);
    EXPECT_TRUE(Bus().smb_block_write(-1, 0x2A, 0x05, 3, m_data.data()));
    EXPECT_EQ(Operation(), "smbus write command 0x05 size 5 block 03 11 22 33");
}

TEST_F(LinuxBusSmbus, CallsProcesses) {
    Only(I2C_FUNC_SMBUS_PROC_CALL);
    m_dev.bytes = {1, 0xA2};
    EXPECT_TRUE(Bus().smb_block_process_call(-1, 0x2A, 0x05, 1, m_data.data()));
    EXPECT_EQ(Operation(), "smbus write command 0x05 size 4 word 1101");
    EXPECT_EQ(m_data[0], 0xA2);
}

TEST_F(LinuxBusSmbus, CallsProcessesWithBlocks) {
    Only(I2C_FUNC_SMBUS_BLOCK_PROC_CALL);
    m_dev.bytes = {3, 0xA1, 0xA2, 0xA3};
    EXPECT_TRUE(Bus().smb_block_process_call(-1, 0x2A, 0x05, 3, m_data.data()));
    EXPECT_EQ(Operation(), "smbus write command 0x05 size 7 block 03 11 22 33");
    EXPECT_EQ(m_data[0], 0xA1);
    EXPECT_EQ(m_data[2], 0xA3);
}

// A record with a packet error code is the next longer operation.
TEST_F(LinuxBusSmbus, CarriesPacketErrorCodes) {
    EXPECT_TRUE(Bus().smb_write_byte(-1, 0x50, 0x12, 0x34));
    CI2cXfrReq req;
    req.saddr = 0x50;
    req.cmd_sel = 1;
    req.cmd = 0x12;
    req.data = m_data.data();
    req.tsize = 1;
    req.wpec_en = 1;
    EXPECT_TRUE(Bus().I2cTrans(req));
    EXPECT_TRUE(Operation().starts_with("smbus write command 0x12 size 3 word ")) << Operation();
    EXPECT_TRUE(Operation().ends_with("11")) << Operation();
}

TEST_F(LinuxBusSmbus, UsesBlocksOfI2cForWhatHasNoOperationOfItsOwn) {
    Only(I2C_FUNC_SMBUS_I2C_BLOCK);
    m_dev.bytes = {1, 0xA1};
    EXPECT_TRUE(Write(1, 0x44, 1));
    EXPECT_EQ(Operation(), "smbus write command 0x44 size 8 block 01 11");
    EXPECT_TRUE(Read(1, 0x44, 1));
    EXPECT_EQ(Operation(), "smbus read command 0x44 size 8 block 01 00");
    EXPECT_EQ(m_data[0], 0xA1);
}

TEST_F(LinuxBusSmbus, RefusesWhatNoOperationIs) {
    EXPECT_FALSE(Read(2, 0x1234, 1));
    EXPECT_EQ(
        m_errmsg,
        "/dev/i2c-3 (Bench adapter) has no I2C_FUNC_I2C: it cannot write 2 bytes, read 1 byte");
    EXPECT_FALSE(Read(0, 0, 2));
    EXPECT_EQ(m_errmsg, "/dev/i2c-3 (Bench adapter) has no I2C_FUNC_I2C: it cannot read 2 bytes");
    EXPECT_EQ(m_dev.Call(), "slave 0x50");  // whose is it?
}

TEST_F(LinuxBusSmbus, RefusesMessagesThatAreNoWriteAndRead) {
    std::array<uint8_t, 2> bytes{};
    const std::span<uint8_t> data = bytes;
    const std::array read_first = {CI2cMsg{0x50, true, data}, CI2cMsg{0x50, false, data}};
    const std::array writes = {CI2cMsg{0x50, false, data}, CI2cMsg{0x50, false, data}};
    EXPECT_EQ(Bus().Move(read_first).outcome, I2C_OTHER);
    EXPECT_EQ(Bus().Move(writes).outcome, I2C_OTHER);
    EXPECT_TRUE(m_dev.calls.empty());
}

// Each transfer on an adapter that has everything but what it takes.
TEST_F(LinuxBusSmbus, NamesTheFunctionThatIsMissing) {
    struct CCase {
        uint8_t dir;
        uint8_t cmd_sel;
        uint8_t tsize;
        unsigned long missing;
        const char* text;
    };
    const std::array cases = {
        CCase{0, 0, 0, I2C_FUNC_SMBUS_QUICK, "I2C_FUNC_SMBUS_QUICK: it cannot quick write"},
        CCase{1, 0, 0, I2C_FUNC_SMBUS_QUICK, "I2C_FUNC_SMBUS_QUICK: it cannot quick read"},
        CCase{0, 0, 1, I2C_FUNC_SMBUS_WRITE_BYTE,
              "I2C_FUNC_SMBUS_WRITE_BYTE: it cannot write 1 byte"},
        CCase{1, 0, 1, I2C_FUNC_SMBUS_READ_BYTE, "I2C_FUNC_SMBUS_READ_BYTE: it cannot read 1 byte"},
        CCase{0, 1, 1, I2C_FUNC_SMBUS_WRITE_BYTE_DATA | I2C_FUNC_SMBUS_WRITE_I2C_BLOCK,
              "I2C_FUNC_SMBUS_WRITE_BYTE_DATA: it cannot write 2 bytes"},
        CCase{1, 1, 1, I2C_FUNC_SMBUS_READ_BYTE_DATA | I2C_FUNC_SMBUS_READ_I2C_BLOCK,
              "I2C_FUNC_SMBUS_READ_BYTE_DATA: it cannot write 1 byte, read 1 byte"},
        CCase{0, 1, 2, I2C_FUNC_SMBUS_WRITE_WORD_DATA | I2C_FUNC_SMBUS_WRITE_I2C_BLOCK,
              "I2C_FUNC_SMBUS_WRITE_WORD_DATA: it cannot write 3 bytes"},
        CCase{1, 1, 2, I2C_FUNC_SMBUS_READ_WORD_DATA | I2C_FUNC_SMBUS_READ_I2C_BLOCK,
              "I2C_FUNC_SMBUS_READ_WORD_DATA: it cannot write 1 byte, read 2 bytes"},
        CCase{0, 1, 3, I2C_FUNC_SMBUS_WRITE_I2C_BLOCK,
              "I2C_FUNC_SMBUS_WRITE_I2C_BLOCK: it cannot write 4 bytes"},
        CCase{1, 1, 3, I2C_FUNC_SMBUS_READ_I2C_BLOCK,
              "I2C_FUNC_SMBUS_READ_I2C_BLOCK: it cannot write 1 byte, read 3 bytes"},
    };
    for (const CCase& refused : cases) {
        m_bus.reset();
        Only(SMBUS_FUNCTIONS & ~refused.missing);
        m_dev.owned.clear();
        EXPECT_FALSE(Trans(refused.dir, refused.cmd_sel, 0, refused.tsize)) << refused.text;
        EXPECT_EQ(
            m_errmsg,
            std::string("/dev/i2c-3 (Bench adapter) has neither I2C_FUNC_I2C nor ") + refused.text);
    }
}

TEST_F(LinuxBusSmbus, TakesErrorsForWhatTheyAreInMessages) {
    m_dev.operations = {-ENXIO};
    EXPECT_FALSE(Read(1, 0x44, 1));
    EXPECT_EQ(m_errmsg,
              "no acknowledge from 0x50: write 1 byte, read 1 byte on /dev/i2c-3: ENXIO (No such "
              "device or address)");
    m_dev.operations = {-EPROTO};
    EXPECT_FALSE(Bus().smb_block_read(-1, 0x2A, 0x05, 2, m_data.data()));
    EXPECT_EQ(Bus().GetLastError(),
              "0x2a: write 1 byte, read 3 bytes on /dev/i2c-3: EPROTO (Protocol error), the slave "
              "does not answer as SMBus has it");
}

TEST_F(LinuxBusSmbus, MovesWhatItsLongestOperationDoes) {
    const auto most = [this](unsigned long functions) {
        m_bus.reset();
        Only(functions);
        return Bus().GetMaxTransSize();
    };
    EXPECT_EQ(most(SMBUS_FUNCTIONS), 32U);
    EXPECT_EQ(most(I2C_FUNC_SMBUS_READ_I2C_BLOCK), 32U);
    EXPECT_EQ(most(I2C_FUNC_SMBUS_WRITE_BLOCK_DATA), 32U);
    EXPECT_EQ(most(I2C_FUNC_SMBUS_BYTE_DATA | I2C_FUNC_SMBUS_WORD_DATA), 2U);
    EXPECT_EQ(most(I2C_FUNC_SMBUS_QUICK | I2C_FUNC_SMBUS_BYTE), 1U);
    EXPECT_EQ(most(I2C_FUNC_SMBUS_QUICK), 0U);
}

}  // namespace
