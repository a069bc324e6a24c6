// How the EEPROM primitives split a range into transfers, what they trace, and
// where they stop.
#include <gmock/gmock.h>

#include <initializer_list>

#include "tests/i2c/eeprom_test.h"

namespace {

using testing::ElementsAre;

// A range, the part's two sizes, and the transfers it takes.
struct CRange {
    uint8_t xfer_size;
    uint8_t page_size;
    uint16_t addr;
    uint16_t len;
    CCalls chunks;  // "ADDR+LEN"
};
void PrintTo(const CRange& range, std::ostream* out) {
    *out << range.len << " bytes at " << range.addr << " by " << int{range.xfer_size} << " of "
         << int{range.page_size};
}

class I2cEepromChunks : public CEepromTest {
  protected:
    CTestEeprom& MountFor(const CRange& range) {
        i2c_eeprom_attr_t attr = Part(8192);
        attr.xfer_size = range.xfer_size;
        attr.wr_pg_size = range.page_size;
        return Mount(attr);
    }
    static CCalls Prefixed(const std::string& operation, CCalls chunks) {
        for (std::string& chunk : chunks) {
            chunk.insert(0, operation);
        }
        return chunks;
    }
    // `count` bytes that differ from what the chip holds and from each other.
    static Bytes NewBytes(uint16_t addr, size_t count) {
        Bytes bytes = CEepromBus::InitialBytes(addr, count);
        for (uint8_t& byte : bytes) {
            byte = static_cast<uint8_t>(~byte);
        }
        return bytes;
    }
    Bytes Memory(uint16_t addr, size_t count) {
        Bytes bytes;
        for (size_t i = 0; i < count; ++i) {
            bytes.push_back(m_bus.At((addr + i) % CEepromBus::MEMORY_SIZE));
        }
        return bytes;
    }
    // The trace lines alone.
    Texts Traces() const { return m_log.Texts(0x9A); }
};

class I2cEepromReadChunks : public I2cEepromChunks, public testing::WithParamInterface<CRange> {};
INSTANTIATE_TEST_SUITE_P(, I2cEepromReadChunks,
                         testing::Values(CRange{1, 32, 9, 3, {"9+1", "10+1", "11+1"}},
                                         CRange{16, 32, 0, 32, {"0+16", "16+16"}},
                                         CRange{16, 32, 0, 33, {"0+16", "16+16", "32+1"}},
                                         CRange{16, 32, 5, 40, {"5+16", "21+16", "37+8"}},
                                         CRange{16, 32, 7, 15, {"7+15"}},
                                         CRange{16, 32, 7, 16, {"7+16"}},
                                         CRange{64, 32, 0, 65, {"0+32", "32+32", "64+1"}},
                                         CRange{32, 64, 0, 65, {"0+32", "32+32", "64+1"}},
                                         CRange{32, 32, 0, 65, {"0+32", "32+32", "64+1"}},
                                         CRange{32, 1, 3, 2, {"3+1", "4+1"}},
                                         CRange{10, 255, 5, 25, {"5+10", "15+10", "25+5"}},
                                         CRange{255, 255, 1, 600, {"1+255", "256+255", "511+90"}},
                                         CRange{4, 32, 65530, 10, {"65530+4", "65534+4", "2+2"}},
                                         CRange{8, 32, 65535, 1, {"65535+1"}}));

TEST_P(I2cEepromReadChunks, MoveTheRangeInEqualSteps) {
    const CRange& range = GetParam();
    Bytes data(range.len);
    EXPECT_TRUE(MountFor(range).ReadMemory(range.addr, data.data(), range.len));
    EXPECT_EQ(Calls(), Prefixed("RD ", range.chunks));
    EXPECT_EQ(data, CEepromBus::InitialBytes(range.addr, range.len));
    EXPECT_TRUE(Messages().empty());
}

class I2cEepromWriteChunks : public I2cEepromChunks, public testing::WithParamInterface<CRange> {};
INSTANTIATE_TEST_SUITE_P(
    , I2cEepromWriteChunks,
    testing::Values(
        CRange{1, 32, 9, 3, {"9+1", "10+1", "11+1"}},
        CRange{16, 32, 0, 40, {"0+16", "16+16", "32+8"}}, CRange{16, 32, 32, 16, {"32+16"}},
        // The first chunk of an unaligned write is as long as the address
        // lies above its page, not up to the next page.
        CRange{16, 16, 5, 20, {"5+5", "10+10", "20+4", "24+1"}}, CRange{16, 16, 5, 3, {"5+3"}},
        CRange{16, 16, 5, 5, {"5+5"}}, CRange{16, 16, 15, 40, {"15+15", "30+14", "44+11"}},
        CRange{16, 16, 8, 24, {"8+8", "16+16"}}, CRange{8, 32, 4, 20, {"4+4", "8+8", "16+8"}},
        CRange{8, 32, 1, 10, {"1+1", "2+2", "4+4", "8+3"}},
        CRange{64, 32, 32, 33, {"32+32", "64+1"}}, CRange{32, 64, 33, 4, {"33+1", "34+2", "36+1"}},
        CRange{10, 255, 5, 25, {"5+5", "10+10", "20+10"}},
        CRange{255, 255, 255, 600, {"255+255", "510+255", "765+90"}},
        CRange{255, 255, 254, 300, {"254+254", "508+46"}},
        CRange{16, 32, 65520, 32, {"65520+16", "0+16"}},
        CRange{32, 32, 65535, 33, {"65535+31", "30+2"}}));

TEST_P(I2cEepromWriteChunks, FollowTheRemainderOfTheAddress) {
    const CRange& range = GetParam();
    const Bytes data = NewBytes(range.addr, range.len);
    EXPECT_TRUE(MountFor(range).WriteMemory(range.addr, data.data(), range.len));
    EXPECT_EQ(Calls(), Prefixed("WR ", range.chunks));
    EXPECT_EQ(Memory(range.addr, range.len), data);
    // No byte beside the range.
    const auto before = static_cast<uint16_t>(range.addr - 1);
    const auto after = static_cast<uint16_t>(range.addr + range.len);
    EXPECT_EQ(m_bus.At(before), CEepromBus::Initial(before));
    EXPECT_EQ(m_bus.At(after), CEepromBus::Initial(after));
    EXPECT_TRUE(Messages().empty());
}

TEST_F(I2cEepromChunks, MoveTheLongestRangeThereIs) {
    Bytes data(65535);
    EXPECT_TRUE(Mount(Part(65536, 255)).ReadMemory(0, data.data(), 65535));
    EXPECT_EQ(Calls().size(), 257U);
    EXPECT_EQ(Calls().back(), "RD 65280+255");
    EXPECT_EQ(data, CEepromBus::InitialBytes(0, 65535));
}

TEST_F(I2cEepromChunks, MoveByteByByteWhenAnAttributeIs0) {
    for (const uint8_t xfer_size : {uint8_t{0}, uint8_t{16}}) {
        m_journal.Clear();
        CTestEeprom& eeprom = MountFor({xfer_size, static_cast<uint8_t>(16 - xfer_size), 0, 0, {}});
        Bytes data(2);
        EXPECT_TRUE(eeprom.ReadMemory(5, data.data(), 2));
        EXPECT_TRUE(eeprom.WriteMemory(5, data.data(), 2));
        EXPECT_THAT(Calls(), ElementsAre("RD 5+1", "RD 6+1", "WR 5+1", "WR 6+1"));
    }
}

// Traces.

TEST_F(I2cEepromChunks, TraceFourBytesOfAReadOfFour) {
    Bytes data(8);
    m_bus.At(12) = 0x0A;
    m_bus.At(13) = 0xBC;
    m_bus.At(14) = 0x00;
    m_bus.At(15) = 0xFF;
    EXPECT_TRUE(Mount(Part(8192, 4)).ReadMemory(12, data.data(), 4));
    EXPECT_EQ(m_log.Lines(), (CLines{{0x9A, "RD (addr=00012) 0A BC 00 FF"}}));
}

TEST_F(I2cEepromChunks, TraceTheFirstByteOfAnyOtherRead) {
    CTestEeprom& eeprom = Mount(Part(8192));
    Bytes data(128);
    m_bus.At(7) = 0xC5;
    for (const uint16_t len : std::initializer_list<uint16_t>{1, 2, 3, 5, 8, 128}) {
        EXPECT_TRUE(eeprom.ReadMemory(7, data.data(), len));
    }
    EXPECT_EQ(m_log.Lines(), CLines(6, {0x9A, "RD (addr=00007) C5"}));
}

TEST_F(I2cEepromChunks, TraceFourBytesOfAWriteOfFour) {
    const Bytes data{0x01, 0xFE, 0xA0, 0x00};
    EXPECT_TRUE(Mount(Part(8192, 4)).WriteMemory(65532, data.data(), 4));
    EXPECT_EQ(m_log.Lines(), (CLines{{0x9A, "WR (addr=65532) 01 FE A0 00"}}));
}

TEST_F(I2cEepromChunks, TraceTheFirstByteOfAnyOtherWrite) {
    CTestEeprom& eeprom = Mount(Part(8192));
    const Bytes data(128, 0x0D);
    for (const uint16_t len : std::initializer_list<uint16_t>{1, 2, 3, 5, 8, 128}) {
        EXPECT_TRUE(eeprom.WriteMemory(256, data.data(), len));
    }
    EXPECT_EQ(m_log.Lines(), CLines(6, {0x9A, "WR (addr=00256) 0D"}));
}

TEST_F(I2cEepromChunks, TraceEachWithItsOwnAddressAndBytes) {
    CTestEeprom& eeprom = Mount(Part(8192, 4));
    for (uint8_t i = 0; i < 6; ++i) {
        m_bus.At((65534U + i) & 0xFFFFU) = static_cast<uint8_t>(0xA0 + i);
    }
    Bytes data(6);
    EXPECT_TRUE(eeprom.ReadMemory(65534, data.data(), 6));
    const Bytes out{1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_TRUE(eeprom.WriteMemory(2, out.data(), 9));
    EXPECT_THAT(Traces(), ElementsAre("RD (addr=65534) A0 A1 A2 A3", "RD (addr=00002) A4",
                                      "WR (addr=00002) 01", "WR (addr=00004) 03 04 05 06",
                                      "WR (addr=00008) 07"));
}

TEST_F(I2cEepromChunks, TraceReadsAfterAndWritesBeforeTheTransfer) {
    CTestEeprom& eeprom = Mount(Part(8192));
    std::vector<size_t> traced;
    m_bus.OnTransfer([&](size_t, const CI2cXfrReq&) { traced.push_back(Traces().size()); });
    Bytes data(1);
    EXPECT_TRUE(eeprom.ReadMemory(0, data.data(), 1));
    EXPECT_EQ(Traces().size(), 1U);
    EXPECT_TRUE(eeprom.WriteMemory(0, data.data(), 1));
    EXPECT_THAT(traced, ElementsAre(0, 2));
}

// Failures.

TEST_F(I2cEepromChunks, StopAtTheFirstReadThatFails) {
    CTestEeprom& eeprom = Mount(Part(8192, 16));
    m_bus.FailAt(1);
    Bytes data(40, 0xEE);
    EXPECT_FALSE(eeprom.ReadMemory(5, data.data(), 40));
    EXPECT_THAT(Calls(), ElementsAre("RD 5+16", "RD 21+16"));
    // What was read before stays.
    Bytes expected = CEepromBus::InitialBytes(5, 16);
    expected.resize(40, 0xEE);
    EXPECT_EQ(data, expected);
    const CLines lines = {
        {0x9A, "RD (addr=00005) 23"},
        {0x10, "ERROR: Memory read failed (addr=00021 nBytes=16): no ack 1"},
    };
    EXPECT_EQ(m_log.Lines(), lines);
}

TEST_F(I2cEepromChunks, StopAtTheFirstWriteThatFails) {
    CTestEeprom& eeprom = Mount(Part(8192, 16));
    m_bus.FailAt(2);
    const Bytes data = NewBytes(5, 20);
    EXPECT_FALSE(eeprom.WriteMemory(5, data.data(), 20));
    EXPECT_THAT(Calls(), ElementsAre("WR 5+5", "WR 10+10", "WR 20+4"));
    EXPECT_EQ(Memory(5, 15), Bytes(data.begin(), data.begin() + 15));
    EXPECT_EQ(Memory(20, 5), CEepromBus::InitialBytes(20, 5));
    const CLines lines = {
        {0x9A, "WR (addr=00005) DC"},
        {0x9A, "WR (addr=00010) B9"},
        {0x9A, "WR (addr=00020) 73 6C 65 5E"},
        {0x10, "ERROR: Memory write failed (addr=00020 nBytes=4): no ack 2"},
    };
    EXPECT_EQ(m_log.Lines(), lines);
}

TEST_F(I2cEepromChunks, NameTheChunkThatFailsNotTheRange) {
    CTestEeprom& eeprom = Mount(Part(8192, 16));
    Bytes data(60);
    m_bus.FailWhen([](size_t index) { return index == 3 || index == 7; });
    EXPECT_FALSE(eeprom.ReadMemory(65500, data.data(), 60));
    EXPECT_FALSE(eeprom.WriteMemory(65488, data.data(), 60));
    EXPECT_THAT(m_log.Texts(0x10),
                ElementsAre("ERROR: Memory read failed (addr=00012 nBytes=12): no ack 3",
                            "ERROR: Memory write failed (addr=00000 nBytes=12): no ack 7"));
}

TEST_F(I2cEepromChunks, ShowTheErrorOfTheBusAsItIs) {
    CTestEeprom& eeprom = Mount(Part(8192));
    uint8_t byte = 0;
    for (const std::string& error : {std::string("100%s lost\n"), std::string(255, 'x')}) {
        m_log.Clear();
        m_bus.FailWith(error);
        EXPECT_FALSE(eeprom.ReadMemory(0, &byte, 1));
        EXPECT_FALSE(eeprom.WriteMemory(0, &byte, 1));
        EXPECT_THAT(m_log.Texts(0x10),
                    ElementsAre("ERROR: Memory read failed (addr=00000 nBytes=1): " + error,
                                "ERROR: Memory write failed (addr=00000 nBytes=1): " + error));
    }
}

}  // namespace
