// I2C_SMBUS, as a program meets it.
#include <gtest/gtest.h>

#include <algorithm>

#include "boards/root_bus/smbus_pec.h"
#include "tests/boards/i2c_sim/adapter_access.h"

namespace {

constexpr uint8_t READ = I2C_SMBUS_READ;
constexpr uint8_t WRITE = I2C_SMBUS_WRITE;

// Of the EEPROM, whose address byte and data an operation's bytes become: where nothing
// else is, and what it shows of the bytes that went over the wire.
constexpr uint8_t PAGE = 0x1F;

// An adapter with the address of a chip.
class CSlave : public CAdapterFile {
  public:
    CSlave(const char* path, uint8_t addr) : CAdapterFile(path) {
        EXPECT_EQ(Do(I2C_SLAVE, addr), 0);
    }
};

// The EEPROM's bytes at PAGE and `offset`. It answers again when what was written is stored,
// which other reads make time pass for.
CBytes Stored(const CAdapterFile& bus, uint8_t offset, size_t count) {
    CBytes in(count);
    while (bus.WriteRead(EEPROM, {PAGE, offset}, in) != 2) {
        EXPECT_EQ(errno, ENXIO);
    }
    return in;
}

i2c_smbus_data Block(const CBytes& bytes) {
    i2c_smbus_data data = {};
    data.block[0] = static_cast<uint8_t>(bytes.size());
    std::ranges::copy(bytes, &data.block[1]);
    return data;
}

CBytes BytesOf(const i2c_smbus_data& data) {
    return {&data.block[1], &data.block[1] + data.block[0]};
}

}  // namespace

TEST(SimSmbus, AsksWhoIsThere) {
    const CSlave sensor(BUS_0, SENSOR);
    EXPECT_EQ(sensor.Smbus(WRITE, 0, I2C_SMBUS_QUICK, nullptr), 0);
    EXPECT_EQ(sensor.Smbus(READ, 0, I2C_SMBUS_QUICK, nullptr), 0);
    const CSlave nobody(BUS_0, NOBODY);
    EXPECT_EQ(nobody.Smbus(WRITE, 0, I2C_SMBUS_QUICK, nullptr), -ENXIO);
    EXPECT_EQ(nobody.Smbus(READ, 0, I2C_SMBUS_QUICK, nullptr), -ENXIO);
}

TEST(SimSmbus, SendsAndReceivesBytes) {
    const CSlave sensor(BUS_0, SENSOR);
    i2c_smbus_data data = {};
    EXPECT_EQ(sensor.Smbus(WRITE, MAKER_REG, I2C_SMBUS_BYTE, nullptr), 0);
    EXPECT_EQ(sensor.Smbus(READ, 0, I2C_SMBUS_BYTE, &data), 0);
    EXPECT_EQ(data.byte, MAKER);
}

TEST(SimSmbus, ReadsAndWritesBytes) {
    const CSlave cages(BUS_1, CAGES);
    i2c_smbus_data data = {};
    data.byte = 0xA5;
    EXPECT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_BYTE_DATA, &data), 0);
    data.byte = 0;
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_BYTE_DATA, &data), 0);
    EXPECT_EQ(data.byte, 0xA5);
}

TEST(SimSmbus, ReadsAndWritesWordsLowByteFirst) {
    const CSlave cages(BUS_1, CAGES);
    i2c_smbus_data data = {};
    data.word = 0x12A5;
    EXPECT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
    CBytes in(2);
    EXPECT_EQ(cages.WriteRead(CAGES, {OUTPUT_REG}, in), 2);
    EXPECT_EQ(in, (CBytes{0xA5, 0x12}));
    data.word = 0;
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
    EXPECT_EQ(data.word, 0x12A5);
}

TEST(SimSmbus, CallsProcesses) {
    // The EEPROM's second address byte and a byte to store, and then a read. A write that a
    // repeated start ends is not stored.
    const CSlave eeprom(BUS_0, EEPROM);
    i2c_smbus_data data = {};
    data.word = 0x0100;
    EXPECT_EQ(eeprom.Smbus(WRITE, 0, I2C_SMBUS_PROC_CALL, &data), 0);
    CBytes in(2);
    ASSERT_EQ(eeprom.WriteRead(EEPROM, {0, 0, 1}, in), 2);
    EXPECT_EQ(data.word, in[1] << 8 | in[0]);
}

TEST(SimSmbus, WritesBlocksWithTheirCount) {
    const CSlave eeprom(BUS_0, EEPROM);
    // The count is the second address byte.
    i2c_smbus_data data = Block({0xAA, 0xBB, 0xCC});
    EXPECT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_BLOCK_DATA, &data), 0);
    EXPECT_EQ(Stored(eeprom, 3, 3), (CBytes{0xAA, 0xBB, 0xCC}));
}

TEST(SimSmbus, WritesBlocksWithoutTheirCount) {
    const CSlave eeprom(BUS_0, EEPROM);
    i2c_smbus_data data = Block({0x20, 0x0A, 0x0B});
    EXPECT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_I2C_BLOCK_DATA, &data), 0);
    EXPECT_EQ(Stored(eeprom, 0x20, 2), (CBytes{0x0A, 0x0B}));
    data = Block({0x20, 0x0C, 0x0D});
    EXPECT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_I2C_BLOCK_BROKEN, &data), 0);
    EXPECT_EQ(Stored(eeprom, 0x20, 2), (CBytes{0x0C, 0x0D}));
}

TEST(SimSmbus, ReadsBlocksOfTheCountAskedFor) {
    const CSlave cages(BUS_1, CAGES);
    i2c_smbus_data data = {};
    data.word = 0x3412;
    ASSERT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
    data = Block(CBytes(4));
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_I2C_BLOCK_DATA, &data), 0);
    // The two registers take turns.
    EXPECT_EQ(BytesOf(data), (CBytes{0x12, 0x34, 0x12, 0x34}));
    data = {};
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_I2C_BLOCK_BROKEN, &data), 0);
    EXPECT_EQ(BytesOf(data).size(), 32U);
}

TEST(SimSmbus, ReadsBlocksThatTellTheirCount) {
    const CSlave cages(BUS_1, CAGES);
    i2c_smbus_data data = {};
    data.word = 0x7703;
    ASSERT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_BLOCK_DATA, &data), 0);
    EXPECT_EQ(BytesOf(data), (CBytes{0x77, 0x03, 0x77}));
    for (const uint16_t count : {uint16_t{0}, uint16_t{33}, uint16_t{255}}) {
        data.word = count;
        ASSERT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
        EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_BLOCK_DATA, &data), -EPROTO) << count;
    }
}

TEST(SimSmbus, CallsProcessesWithBlocks) {
    const CSlave eeprom(BUS_0, EEPROM);
    CBytes threes(17, 3);
    threes[0] = 0x00;
    i2c_smbus_data data = Block(threes);
    ASSERT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_I2C_BLOCK_DATA, &data), 0);
    ASSERT_EQ(Stored(eeprom, 0x00, 16), CBytes(16, 3));
    // The count is the second address byte. Without a stop condition nothing is stored, and
    // what is read is a block of three.
    data = Block({0x99, 0x99});
    EXPECT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_BLOCK_PROC_CALL, &data), 0);
    EXPECT_EQ(BytesOf(data), CBytes(3, 3));
    EXPECT_EQ(Stored(eeprom, 0x00, 16), CBytes(16, 3));
}

TEST(SimSmbus, RefusesWhatTheKernelRefuses) {
    const CSlave cages(BUS_1, CAGES);
    i2c_smbus_data data = {};
    EXPECT_EQ(cages.Do(I2C_SMBUS, nullptr), -EFAULT);
    EXPECT_EQ(cages.Smbus(READ, 0, 9, &data), -EINVAL);
    EXPECT_EQ(cages.Smbus(2, 0, I2C_SMBUS_BYTE, &data), -EINVAL);
    EXPECT_EQ(cages.Smbus(READ, 0, I2C_SMBUS_BYTE, nullptr), -EINVAL);
    EXPECT_EQ(cages.Smbus(WRITE, 0, I2C_SMBUS_WORD_DATA, nullptr), -EINVAL);
    data.block[0] = 33;
    for (const uint32_t size : {I2C_SMBUS_BLOCK_DATA, I2C_SMBUS_I2C_BLOCK_DATA,
                                I2C_SMBUS_BLOCK_PROC_CALL, I2C_SMBUS_I2C_BLOCK_BROKEN}) {
        EXPECT_EQ(cages.Smbus(WRITE, 0, size, &data), -EINVAL) << size;
    }
    EXPECT_EQ(cages.Smbus(READ, 0, I2C_SMBUS_I2C_BLOCK_DATA, &data), -EINVAL);
}

TEST(SimSmbus, AppendsAPacketErrorCodeToWhatItWrites) {
    const CSlave eeprom(BUS_0, EEPROM);
    ASSERT_EQ(eeprom.Do(I2C_PEC, 1), 0);
    i2c_smbus_data data = {};
    data.word = 0xAB40;  // the second address byte, and a byte to store
    EXPECT_EQ(eeprom.Smbus(WRITE, PAGE, I2C_SMBUS_WORD_DATA, &data), 0);
    const uint8_t pec = CSmbusPec().AddAddress(EEPROM, false).Add(CBytes{PAGE, 0x40, 0xAB}).Get();
    EXPECT_EQ(Stored(eeprom, 0x40, 2), (CBytes{0xAB, pec}));
}

TEST(SimSmbus, ChecksThePacketErrorCodeOfWhatItReads) {
    const CSlave cages(BUS_1, CAGES);
    const uint8_t pec = CSmbusPec()
                            .AddAddress(CAGES, false)
                            .Add(OUTPUT_REG)
                            .AddAddress(CAGES, true)
                            .Add(0x42)
                            .Get();
    i2c_smbus_data data = {};
    data.word = static_cast<uint16_t>((pec << 8) | 0x42);
    ASSERT_EQ(cages.Smbus(WRITE, OUTPUT_REG, I2C_SMBUS_WORD_DATA, &data), 0);
    ASSERT_EQ(cages.Do(I2C_PEC, 1), 0);
    data = {};
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG, I2C_SMBUS_BYTE_DATA, &data), 0);
    EXPECT_EQ(data.byte, 0x42);
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG + 1, I2C_SMBUS_BYTE_DATA, &data), -EBADMSG);
    ASSERT_EQ(cages.Do(I2C_PEC, 0), 0);
    EXPECT_EQ(cages.Smbus(READ, OUTPUT_REG + 1, I2C_SMBUS_BYTE_DATA, &data), 0);
}
