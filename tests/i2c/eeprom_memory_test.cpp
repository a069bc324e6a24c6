// The array "memory": the bytes of an EEPROM by address.
#include "i2c/i2c_eeprom_memory.h"

#include <gmock/gmock.h>

#include "tests/i2c/eeprom_test.h"
#include "tests/support/bytes.h"
#include "tests/support/test_array.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

class I2cEepromMemory : public CEepromTest {
  protected:
    static constexpr uint8_t READONLY = 6;
    static constexpr uint8_t PARAM = 7;

    CI2cEepromMemory& Memory() { return dynamic_cast<CI2cEepromMemory&>(Node("memory")); }

    // A good answer to a peek of the chip's first bytes.
    static Bytes Peeked(uint64_t first, uint64_t last) {
        CBytes bytes;
        bytes.U8(SUCCESS);
        for (uint64_t pos = first; pos <= last; ++pos) {
            bytes.U64(pos).U8(CEepromBus::Initial(pos));
        }
        return bytes;
    }
};

TEST_F(I2cEepromMemory, GetsOneByte) {
    Mount(Part(8192));
    EXPECT_EQ(Memory().Get(0x123), CEepromBus::Initial(0x123));
    EXPECT_THAT(Calls(), ElementsAre("RD 291+1"));
    EXPECT_EQ(m_log.Lines().size(), 1U);
}

TEST_F(I2cEepromMemory, SetsOneByte) {
    Mount(Part(8192));
    Memory().Set(0x123, 0xA5);
    EXPECT_THAT(Calls(), ElementsAre("WR 291+1"));
    EXPECT_EQ(m_bus.At(0x123), 0xA5);
}

TEST_F(I2cEepromMemory, TakesTheLow16BitsOfAnAddress) {
    Mount(Part(131072));
    EXPECT_EQ(Memory().Get(0x10007), CEepromBus::Initial(7));
    Memory().Set(0xFFFFFFFF00000008, 1);
    EXPECT_THAT(Calls(), ElementsAre("RD 7+1", "WR 8+1"));
}

TEST_F(I2cEepromMemory, ThrowsWhenAByteCannotBeRead) {
    Mount(Part(8192));
    m_bus.FailWhen([](size_t) { return true; });
    EXPECT_EQ(ThrownText([this] { Memory().Get(0x0AB); }), "Failed to read memory at 00AB");
    EXPECT_EQ(ThrownText([this] { Memory().Get(0x1FFFE); }), "Failed to read memory at FFFE");
    EXPECT_EQ(m_log.Texts(0x10)[0], "ERROR: Memory read failed (addr=00171 nBytes=1): no ack 0");
}

TEST_F(I2cEepromMemory, ThrowsWhenAByteCannotBeWritten) {
    Mount(Part(8192));
    m_bus.FailWhen([](size_t) { return true; });
    EXPECT_EQ(ThrownText([this] { Memory().Set(0x0AB, 1); }), "Failed to write memory at 00AB");
    EXPECT_EQ(ThrownText([this] { Memory().Set(0x1FFFE, 1); }), "Failed to write memory at FFFE");
}

TEST_F(I2cEepromMemory, LeavesThePathAlone) {
    MountBehindSwitch(Part(8192));
    EXPECT_EQ(Peek(Memory(), 1, 2).bytes, Peeked(1, 2));
    EXPECT_EQ(Poke(Memory(), 9, 1, 2).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 1+1", "RD 2+1", "WR 1+1", "WR 2+1"));
}

TEST_F(I2cEepromMemory, NeedsADevice) {
    EXPECT_THAT(ThrownText([] { const CI2cEepromMemory memory(nullptr, 256, false); }),
                EndsWith("Assert failed (m_pDev != NULL)"));
}

TEST_F(I2cEepromMemory, IsAnArrayByAddress) {
    Mount(Part(256));
    EXPECT_EQ(Memory().GetNodeType(), TARRAY_A);
    EXPECT_EQ(Memory().GetValueType(), 0x31);
    EXPECT_EQ(Memory().GetStartAddr(), 0U);
    EXPECT_EQ(Memory().GetEndAddr(), 256U);
    EXPECT_FALSE(Memory().IsReadOnly());
}

// Peeks.

TEST_F(I2cEepromMemory, AnswersAPeekOfOneByte) {
    Mount(Part(8192));
    EXPECT_EQ(Peek(Memory(), 0x10, 0x10).bytes, Peeked(0x10, 0x10));
    // The transfer is traced, the peek is not.
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(I2cEepromMemory, AnswersAPeekOfARangeInEitherDirection) {
    Mount(Part(8192));
    EXPECT_EQ(Peek(Memory(), 2, 5).bytes, Peeked(2, 5));
    EXPECT_EQ(Peek(Memory(), 5, 2).bytes, Peeked(2, 5));
    EXPECT_THAT(Calls(), ElementsAre("RD 2+1", "RD 3+1", "RD 4+1", "RD 5+1", "RD 2+1", "RD 3+1",
                                     "RD 4+1", "RD 5+1"));
}

TEST_F(I2cEepromMemory, ReachesOneByteBehindTheLast) {
    Mount(Part(8192));
    EXPECT_EQ(Peek(Memory(), 8191, 8192).bytes, Peeked(8191, 8192));
    EXPECT_EQ(Poke(Memory(), 0x44, 8192, 8192).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 8191+1", "RD 8192+1", "WR 8192+1"));
}

TEST_F(I2cEepromMemory, WrapsBehindTheLastOf65536Bytes) {
    Mount(Part(65536));
    EXPECT_EQ(Peek(Memory(), 65535, 65536).bytes, Peeked(65535, 65536));
    EXPECT_THAT(Calls(), ElementsAre("RD 65535+1", "RD 0+1"));
}

TEST_F(I2cEepromMemory, RefusesAPositionBehindItsEnd) {
    Mount(Part(8192));
    EXPECT_EQ(Peek(Memory(), 8193, 8193).bytes, Bytes{PARAM});
    EXPECT_EQ(Peek(Memory(), 0, 8194).bytes, Bytes{PARAM});
    EXPECT_EQ(Poke(Memory(), 1, 8193, 0).bytes, Bytes{PARAM});
    const CLines expected = {
        {0x10, "peek (Addr. 0x2001 out of bounds)"},
        {0x80, "ERR_PARAM peek (Addr. 0x2001 out of bounds)"},
        {0x10, "peek (Addr. 0x2002 out of bounds)"},
        {0x80, "ERR_PARAM peek (Addr. 0x2002 out of bounds)"},
        {0x10, "poke (Addr. 0x2001 out of bounds)"},
        {0x80, "ERR_PARAM poke (Addr. 0x2001 out of bounds)"},
    };
    EXPECT_EQ(m_log.Lines(), expected);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromMemory, AnswersAFailedPeekWithoutValues) {
    Mount(Part(8192));
    m_bus.FailAt(2);
    EXPECT_EQ(Peek(Memory(), 0x10, 0x14).bytes, Bytes{FAIL});
    const CLines expected = {
        {0x10, "ERROR: Memory read failed (addr=00018 nBytes=1): no ack 2"},
        {0x10, "peek[0x10..0x14] (Failed to read memory at 0012)"},
        {0x80, "ERR_FAIL peek[0x10..0x14] (Failed to read memory at 0012)"},
    };
    EXPECT_EQ(Messages(), expected);
    EXPECT_THAT(Calls(), SizeIs(3));
}

// Pokes.

TEST_F(I2cEepromMemory, PokesOneValueIntoARange) {
    Mount(Part(8192));
    EXPECT_EQ(Poke(Memory(), 0xB7, 0x20, 0x22).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("WR 32+1", "WR 33+1", "WR 34+1"));
    for (const size_t addr : {0x20, 0x21, 0x22}) {
        EXPECT_EQ(m_bus.At(addr), 0xB7);
    }
    EXPECT_EQ(m_bus.At(0x23), CEepromBus::Initial(0x23));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(I2cEepromMemory, StopsAPokeAtTheFirstFailure) {
    Mount(Part(8192));
    m_bus.FailAt(1);
    EXPECT_EQ(Poke(Memory(), 0xB7, 0x20, 0x22).bytes, Bytes{FAIL});
    EXPECT_THAT(Calls(), ElementsAre("WR 32+1", "WR 33+1"));
    EXPECT_EQ(m_bus.At(0x20), 0xB7);
    const CLines expected = {
        {0x10, "ERROR: Memory write failed (addr=00033 nBytes=1): no ack 1"},
        {0x10, "poke[0x20..0x22] (Failed to write memory at 0021)"},
        {0x80, "ERR_FAIL poke[0x20..0x22] (Failed to write memory at 0021)"},
    };
    EXPECT_EQ(Messages(), expected);
}

TEST_F(I2cEepromMemory, RefusesPokesOfAReadOnlyPart) {
    Mount(Part(8192), true);
    EXPECT_TRUE(Memory().IsReadOnly());
    // Even one without any field.
    EXPECT_EQ(Send(Memory(), MSG_POKEV).bytes, Bytes{READONLY});
    EXPECT_EQ(Poke(Memory(), 1, 0, 0).bytes, Bytes{READONLY});
    const CLines expected = {
        {0x10, "poke (Value is readonly)"},
        {0x80, "ERR_READONLY poke"},
        {0x10, "poke (Value is readonly)"},
        {0x80, "ERR_READONLY poke"},
    };
    EXPECT_EQ(m_log.Lines(), expected);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(Peek(Memory(), 0, 0).bytes, Peeked(0, 0));
}

}  // namespace
