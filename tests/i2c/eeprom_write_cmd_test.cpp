// The command "write-byte": its arguments, its hint, and the path around it.
#include <gmock/gmock.h>

#include "tests/i2c/eeprom_test.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class I2cEepromWriteByte : public CEepromTest {
  protected:
    CAnswer Write(uint32_t addr, uint8_t data) { return Call("write-byte", addr, data); }

    const CLogCapture::Line m_hint = Print(
        "This EEPROM has to be manually enable the write function on the hardware\n"
        " by jumpping the manufacturing connector pins\n");
};

TEST_F(I2cEepromWriteByte, WritesOneByteBehindItsHint) {
    Mount(Part(8192));
    EXPECT_EQ(Write(0x123, 0xA5).bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_log.Lines(), (CLines{m_hint, {0x9A, "WR (addr=00291) A5"}}));
    EXPECT_THAT(Calls(), ElementsAre("WR 291+1"));
    EXPECT_EQ(m_bus.Xfers()[0].data, Bytes{0xA5});
    EXPECT_EQ(m_bus.At(0x123), 0xA5);
    EXPECT_EQ(m_bus.At(0x122), CEepromBus::Initial(0x122));
    EXPECT_EQ(m_bus.At(0x124), CEepromBus::Initial(0x124));
}

TEST_F(I2cEepromWriteByte, WritesTheFirstAndTheLastByte) {
    Mount(Part(8192));
    EXPECT_EQ(Write(0, 0x5A).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Write(8191, 0x5B).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("WR 0+1", "WR 8191+1"));
    EXPECT_EQ(m_bus.At(0), 0x5A);
    EXPECT_EQ(m_bus.At(8191), 0x5B);
}

TEST_F(I2cEepromWriteByte, RefusesAnAddressAtTheEndAndAnswersNothing) {
    MountBehindSwitch(Part(8192));
    for (const uint32_t addr : {8192U, 8193U, 0x10000U, 0xFFFFFFFFU}) {
        m_log.Clear();
        EXPECT_THAT(Write(addr, 1).bytes, IsEmpty());
        EXPECT_EQ(m_log.Lines(),
                  CLines{ArgError("Invalid EEPROM offset. Offsetis between 0 - 8192\n")});
    }
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromWriteByte, NamesTheSizeOfItsOwnPart) {
    Mount(Part(256));
    EXPECT_THAT(Write(256, 1).bytes, IsEmpty());
    EXPECT_EQ(m_log.Lines(), CLines{ArgError("Invalid EEPROM offset. Offsetis between 0 - 256\n")});
}

TEST_F(I2cEepromWriteByte, TakesTheLow16BitsOfAnAddress) {
    Mount(Part(131072));
    EXPECT_EQ(Write(0x10010, 0xC3).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre("WR 16+1"));
}

// Arguments.

TEST_F(I2cEepromWriteByte, AnswersNothingWithoutItsArguments) {
    MountBehindSwitch(Part(256));
    EXPECT_THAT(Call("write-byte").bytes, IsEmpty());
    EXPECT_THAT(Call("write-byte", uint32_t{16}).bytes, IsEmpty());
    EXPECT_THAT(Call("write-byte", CNumbers{{1, 2}}).bytes, IsEmpty());
    const CLines expected = {
        ArgError("Param exception: " + UnderflowText<uint32_t>() + "\n"),
        ArgError("Param exception: " + UnderflowText<uint8_t>() + "\n"),
        ArgError("Param exception: " + UnderflowText<uint32_t>({1, 2}) + "\n"),
    };
    EXPECT_EQ(m_log.Lines(), expected);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(I2cEepromWriteByte, ReadsBothArgumentsBeforeItLooksAtTheAddress) {
    Mount(Part(256));
    EXPECT_THAT(Call("write-byte", uint32_t{256}).bytes, IsEmpty());
    EXPECT_EQ(m_log.Lines(),
              CLines{ArgError("Param exception: " + UnderflowText<uint8_t>() + "\n")});
}

TEST_F(I2cEepromWriteByte, FailsTheAssertionWhenDetached) {
    Mount(Part(256));
    const std::unique_ptr<CDiagObj> command = Detach("write-byte");
    EXPECT_EQ(Send(dynamic_cast<CDiagMenu&>(*command), MSG_CALL).bytes, Bytes{FAIL});
    ASSERT_THAT(m_log.Lines(), SizeIs(1));
    EXPECT_EQ(m_log.Lines()[0].first, 0x30U);
    EXPECT_TRUE(IsMissingDeviceText(m_log.Lines()[0].second));
}

// The path and failures.

TEST_F(I2cEepromWriteByte, OpensThePathAndClosesIt) {
    MountBehindSwitch(Part(256));
    EXPECT_EQ(Write(16, 1).bytes, Bytes{SUCCESS});
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "WR 16+1", CLOSE));
    EXPECT_EQ(Messages(), CLines{m_hint});
}

TEST_F(I2cEepromWriteByte, WritesNothingWhenThePathCannotBeOpened) {
    MountBehindSwitch(Part(256));
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Write(16, 1).bytes, Bytes{FAIL});
    EXPECT_EQ(Messages(), CLines{ArgError("  Error when enabling I2C path!\n")});
    EXPECT_THAT(Calls(), ElementsAre(SELECT));
}

TEST_F(I2cEepromWriteByte, FailsWhenThePathCannotBeClosedThoughItHasWritten) {
    MountBehindSwitch(Part(256));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Write(16, 0xD7).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
    EXPECT_EQ(m_bus.At(16), 0xD7);
}

TEST_F(I2cEepromWriteByte, ClosesThePathWhenTheWriteFails) {
    MountBehindSwitch(Part(256));
    m_bus.FailAt(0);
    EXPECT_EQ(Write(16, 1).bytes, Bytes{FAIL});
    const CLines expected = {
        m_hint,
        {0x10, "ERROR: Memory write failed (addr=00016 nBytes=1): no ack 0"},
    };
    EXPECT_EQ(Messages(), expected);
    EXPECT_THAT(Calls(), ElementsAre(SELECT, "WR 16+1", CLOSE));
}

TEST_F(I2cEepromWriteByte, AnswersOnceWhenBothWriteAndPathFail) {
    MountBehindSwitch(Part(256));
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Write(16, 1).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x30), ElementsAre("  Error when disabling I2C path!\n"));
}

TEST_F(I2cEepromWriteByte, KeepsATestFromTakingTheDevice) {
    Mount(Part(256));
    bool waits = false;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = WouldWait(Eeprom(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Write(0, 1).bytes, Bytes{SUCCESS});
    EXPECT_TRUE(waits);
}

}  // namespace
