// The command "read": its arguments, its dump, and the path around it.
#include <gmock/gmock.h>

#include <cstdio>

#include "tests/i2c/eeprom_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class I2cEepromRead : public CEepromTest {
  protected:
    CAnswer Read(uint32_t addr) { return Call("read", addr); }
    CAnswer Read(uint32_t addr, int32_t length) {
        return Call("read", addr, static_cast<uint32_t>(length));
    }
    std::string Printed() const { return m_log.Joined(0xB0); }

    // The dump of the chip's first bytes from `addr` on.
    static std::string Dump(uint32_t addr, size_t count) {
        std::string text;
        for (size_t i = 0; i < count; ++i) {
            char piece[16];
            if (i % 16 == 0) {
                std::snprintf(piece, sizeof piece,
                              "\n0x%04x:  ", static_cast<unsigned int>(addr + i));
                text += piece;
            }
            std::snprintf(piece, sizeof piece, " %02x", CEepromBus::Initial(addr + i));
            text += piece;
        }
        return text + "\n";
    }
};

TEST_F(I2cEepromRead, PrintsABytePerColumnAndSixteenPerRow) {
    Mount(Part(8192, 8));
    for (size_t i = 0; i < 20; ++i) {
        m_bus.At(0x0FA + i) = static_cast<uint8_t>(0x0C + i);
    }

    EXPECT_EQ(Read(0x0FA, 20).bytes, Bytes{SUCCESS});

    EXPECT_EQ(Printed(),
              "\n0x00fa:   0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b"
              "\n0x010a:   1c 1d 1e 1f\n");
    EXPECT_THAT(Calls(), ElementsAre("RD 250+8", "RD 258+8", "RD 266+4"));
    for (const CLogCapture::Line& line : Messages()) {
        EXPECT_EQ(line.first, 0xB0U) << line.second;
    }
}

TEST_F(I2cEepromRead, PrintsFullRowsWithoutAnEmptyOneBehind) {
    Mount(Part(8192));
    EXPECT_EQ(Read(0, 32).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), Dump(0, 32));
}

TEST_F(I2cEepromRead, PrintsOneByte) {
    Mount(Part(8192));
    EXPECT_EQ(Read(8191, 1).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), Dump(8191, 1));
    EXPECT_THAT(Calls(), ElementsAre("RD 8191+1"));
}

TEST_F(I2cEepromRead, ReadsToTheEndWithoutALength) {
    Mount(Part(256, 64));
    EXPECT_EQ(Read(200).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 200+56"));
    EXPECT_EQ(Printed(), Dump(200, 56));
}

TEST_F(I2cEepromRead, ReadsAllOfTheMemoryFromAddress0) {
    Mount(Part(8192, 64));
    EXPECT_EQ(Read(0).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), SizeIs(128));
    EXPECT_EQ(Printed(), Dump(0, 8192));
}

TEST_F(I2cEepromRead, CutsALengthAtTheEndOfTheMemory) {
    Mount(Part(256, 64));
    EXPECT_EQ(Read(250, 7).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Read(250, 1000).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 250+6", "RD 250+6"));
    EXPECT_EQ(Printed(), Dump(250, 6) + Dump(250, 6));
}

TEST_F(I2cEepromRead, ReadsALengthThatEndsWithTheMemory) {
    Mount(Part(256, 64));
    EXPECT_EQ(Read(250, 6).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 250+6"));
}

TEST_F(I2cEepromRead, PrintsANewlineForALengthOf0) {
    MountBehindSwitch(Part(256));
    EXPECT_EQ(Read(16, 0).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Messages(), CLines{Print("\n")});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, CLOSE));
}

TEST_F(I2cEepromRead, PrintsANewlineFromTheEndOfTheMemoryOn) {
    MountBehindSwitch(Part(256));
    EXPECT_EQ(Read(256).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Messages(), CLines{Print("\n")});
    EXPECT_EQ(Read(256, 4).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, CLOSE, SELECT, CLOSE));
}

// Lengths that are below zero, or become so by the cut at the end, are no
// size of a buffer.
TEST_F(I2cEepromRead, HasNoBufferBelow0Bytes) {
    MountBehindSwitch(Part(256));
    EXPECT_EQ(Read(16, -1).bytes, Bytes{FAIL});
    EXPECT_EQ(Read(16, -16).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages(), (CLines{ArgError("malloc(-1) failed"), ArgError("malloc(-16) failed")}));
    // The exception leaves the command, and the path stays open.
    EXPECT_THAT(Calls(), ElementsAre(SELECT, SELECT));
}

TEST_F(I2cEepromRead, HasNoBufferForAnAddressBehindTheEnd) {
    MountBehindSwitch(Part(256));
    EXPECT_EQ(Read(257).bytes, Bytes{FAIL});
    EXPECT_EQ(Read(260, 8).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages(), (CLines{ArgError("malloc(-1) failed"), ArgError("malloc(-4) failed")}));
    EXPECT_THAT(Calls(), ElementsAre(SELECT, SELECT));
}

TEST_F(I2cEepromRead, TakesTheLow16BitsOfAnAddress) {
    Mount(Part(131072));
    EXPECT_EQ(Read(0x10010, 4).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 16+4"));
    EXPECT_EQ(Printed(), "\n0x10010:   70 77 7e 85\n");
}

TEST_F(I2cEepromRead, MovesTheLow16BitsOfALength) {
    Mount(Part(131072));
    EXPECT_EQ(Read(0, 0x10003).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("RD 0+3"));
    // All bytes of the length are printed; three of them were read.
    const std::string printed = Printed();
    EXPECT_EQ(printed.substr(0, Dump(0, 3).size() - 1), "\n0x0000:   00 07 0e");
    EXPECT_EQ(printed.size(), Dump(0, 0x10003).size());
}

// Arguments.

TEST_F(I2cEepromRead, AnswersNothingWithoutAnAddress) {
    MountBehindSwitch(Part(256));
    EXPECT_THAT(Call("read").bytes, IsEmpty());
    EXPECT_EQ(Messages(), CLines{ArgError("Param exception: " + UnderflowText<uint32_t>() + "\n")});
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromRead, AnswersNothingToACutArgument) {
    MountBehindSwitch(Part(256));
    EXPECT_THAT(Call("read", CNumbers{{0, 0, 1}}).bytes, IsEmpty());
    EXPECT_THAT(Call("read", uint32_t{16}, CNumbers{{0, 1}}).bytes, IsEmpty());
    const CLines expected = {
        ArgError("Param exception: " + UnderflowText<uint32_t>({0, 0, 1}) + "\n"),
        ArgError("Param exception: " + UnderflowText<uint32_t>({0, 1}) + "\n"),
    };
    EXPECT_EQ(Messages(), expected);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromRead, TakesNoNoticeOfFurtherArguments) {
    Mount(Part(256));
    EXPECT_EQ(Call("read", uint32_t{0}, uint32_t{2}, uint8_t{9}).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), Dump(0, 2));
}

TEST_F(I2cEepromRead, FailsTheAssertionWhenDetached) {
    Mount(Part(256));
    const std::unique_ptr<CDiagObj> command = Detach("read");
    const CAnswer reply = Send(dynamic_cast<CDiagMenu&>(*command), MSG_CALL, uint32_t{0});
    EXPECT_EQ(reply.bytes, Bytes{FAIL});
    ASSERT_THAT(m_log.Lines(), SizeIs(1));
    EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

TEST_F(I2cEepromRead, LooksForItsDeviceBeforeItsArguments) {
    Mount(Part(256));
    const std::unique_ptr<CDiagObj> command = Detach("read");
    EXPECT_EQ(Send(dynamic_cast<CDiagMenu&>(*command), MSG_CALL).bytes, Bytes{FAIL});
    ASSERT_THAT(m_log.Lines(), SizeIs(1));
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

// The path and failures.

TEST_F(I2cEepromRead, OpensThePathAndClosesIt) {
    MountBehindSwitch(Part(256, 16));
    EXPECT_EQ(Read(0, 32).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+16", "RD 16+16", CLOSE));
}

TEST_F(I2cEepromRead, ReadsNothingWhenThePathCannotBeOpened) {
    MountBehindSwitch(Part(256));
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Read(0, 32).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when enabling I2C path!\n")});
    EXPECT_THAT(Calls(), ElementsAre(SELECT));
}

TEST_F(I2cEepromRead, FailsWhenThePathCannotBeClosedThoughItHasRead) {
    MountBehindSwitch(Part(256));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Read(0, 3).bytes, Bytes{FAIL});
    EXPECT_EQ(Printed(), Dump(0, 3));
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
    EXPECT_EQ(Messages().back(), ArgError("  Error when disabling I2C path!\n"));
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+3", CLOSE));
}

TEST_F(I2cEepromRead, PrintsOnlyANewlineWhenTheReadFails) {
    MountBehindSwitch(Part(256, 16));
    m_bus.FailAt(1);
    EXPECT_EQ(Read(0, 40).bytes, Bytes{FAIL});
    const CLines expected = {
        {0x10, "ERROR: Memory read failed (addr=00016 nBytes=16): no ack 1"},
        Print("\n"),
    };
    EXPECT_EQ(Messages(), expected);
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "RD 0+16", "RD 16+16", CLOSE));
}

TEST_F(I2cEepromRead, AnswersOnceWhenBothReadAndPathFail) {
    MountBehindSwitch(Part(256));
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Read(0, 4).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
}

TEST_F(I2cEepromRead, KeepsATestFromTakingTheDevice) {
    Mount(Part(256));
    bool waits = false;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = WouldWait(Eeprom(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Read(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
}

}  // namespace
