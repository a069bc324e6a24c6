// Reading the contents of an SPD EEPROM: steps, failures, and the path around.
#include <gmock/gmock.h>

#include "tests/i2c/spd_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using CRecord = CGuardedRecord<ddr3_spd_eeprom_t>;

class SpdEepromRead : public CSpdEepromTest {
  protected:
    SpdEepromRead() { Store(m_image); }

    static CLogCapture::Line ReadError(size_t addr) {
        char text[64];
        std::snprintf(text, sizeof text, "Error during EEPROM read! addr = 0x%zx ", addr);
        return {0x10, text};
    }

    const Bytes m_image = ImageNamed("spd_registered");
};

TEST_F(SpdEepromRead, ReadsWholeStepsOfEverySize) {
    for (unsigned int step = 1; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        m_journal.Clear();
        i2c_eeprom_attr_t attr = Spd(static_cast<uint8_t>(step));
        CPlaced eeprom(m_bus, &attr);
        CRecord record;
        ASSERT_TRUE(eeprom.ReadSPD(record.Get()));
        ASSERT_EQ(Calls(), StepCalls(SIZE, step));
        ASSERT_EQ(record.Bytes(), m_image);
        ASSERT_TRUE(record.IsIntactBehind());
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(SpdEepromRead, ShowsTheSameWhateverTheStep) {
    const std::string expected = ExpectedNamed("spd_registered");
    for (unsigned int step = 1; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        MountRecord(Spd(static_cast<uint8_t>(step)));
        ASSERT_EQ(ShowOnTerminal().bytes, Bytes{SUCCESS});
        ASSERT_EQ(m_stdout, expected);
    }
}

// Behind its last byte a part of one address byte goes on with its first.
TEST_F(SpdEepromRead, SplitsStepsByTheWritePage) {
    i2c_eeprom_attr_t attr = Spd(100);
    attr.wr_pg_size = 64;
    CPlaced eeprom(m_bus, &attr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadSPD(record.Get()));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+64", "RD 64+36", "RD 100+64", "RD 164+36", "RD 200+64",
                                     "RD 8+36"));
    ASSERT_FALSE(m_bus.Xfers().empty());
    EXPECT_EQ(m_bus.Xfers().back().req.cmd, 264);
    EXPECT_EQ(record.Bytes(), m_image);
    EXPECT_TRUE(record.IsIntactBehind());
}

TEST_F(SpdEepromRead, ReadsByteByByteWithoutAttributes) {
    CPlaced eeprom(m_bus, nullptr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadSPD(record.Get()));
    EXPECT_EQ(Calls(), StepCalls(SIZE, 1));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SpdEepromRead, EndsWithATransferSizeOf0) {
    i2c_eeprom_attr_t attr = Spd(0);
    CPlaced eeprom(m_bus, &attr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadSPD(record.Get()));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SpdEepromRead, SendsOneAddressByteAndItsChannel) {
    MountRecordBehindSwitch(Spd(128));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    ASSERT_THAT(m_bus.Xfers(), SizeIs(2));
    EXPECT_EQ(Describe(m_bus.Xfers()[1].req),
              "saddr=0x52 esaddr=0 cmd_sel=1 baddr_sel=0 cmd=0x80 baddr=0 data=set tsize=128 dir=1 "
              "xfer=0 rpec_en=0 wpec_en=0 switch_ch=3 errmsg=''");
}

TEST_F(SpdEepromRead, KeepsWhatWasReadBeforeTheStepThatFails) {
    for (const uint8_t step : Bytes{1, 3, 64, 100, 128, 255}) {
        for (size_t at = 0; at < SIZE; at += step) {
            SCOPED_TRACE("xfer_size " + std::to_string(step) + ", step at " + std::to_string(at));
            i2c_eeprom_attr_t attr = Spd(step);
            CPlaced eeprom(m_bus, &attr);
            m_log.Clear();
            m_journal.Clear();
            FailTransfer(at / step);
            CRecord record;
            ASSERT_FALSE(eeprom.ReadSPD(record.Get()));
            ASSERT_EQ(record.Bytes(), CutAt(m_image, at));
            ASSERT_TRUE(record.IsIntactBehind());
            ASSERT_THAT(Calls(), SizeIs(at / step + 1));
            // The failed transfer tells first why.
            ASSERT_THAT(Messages(), SizeIs(2));
            ASSERT_EQ(Messages()[0].first, 0x10U);
            ASSERT_EQ(Messages()[1], ReadError(at));
        }
    }
}

TEST_F(SpdEepromRead, NamesTheStepAndKeepsItsFirstTransfers) {
    i2c_eeprom_attr_t attr = Spd(64);
    attr.wr_pg_size = 16;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(6);  // at address 96
    CRecord record;
    EXPECT_FALSE(eeprom.ReadSPD(record.Get()));
    EXPECT_EQ(Messages(),
              (CLines{{0x10, "ERROR: Memory read failed (addr=00096 nBytes=16): no ack 6"},
                      {0x10, "Error during EEPROM read! addr = 0x40 "}}));
    EXPECT_EQ(record.Bytes(), CutAt(m_image, 96));
}

TEST_F(SpdEepromRead, FailsWhenOnlyBytesBehindTheRecordCannotBeRead) {
    i2c_eeprom_attr_t attr = Spd(100);
    attr.wr_pg_size = 28;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(10);  // at address 256
    CRecord record;
    EXPECT_FALSE(eeprom.ReadSPD(record.Get()));
    ASSERT_FALSE(m_bus.Xfers().empty());
    EXPECT_EQ(m_bus.Xfers().back().req.cmd, 256);
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().back(), ReadError(200));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SpdEepromRead, LeavesThePathToItsCaller) {
    MountRecordBehindSwitch(Spd(128));
    CRecord record;
    EXPECT_TRUE(Device().ReadSPD(record.Get()));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+128", "RD 128+128"));
}

// The command and its path.

TEST_F(SpdEepromRead, OpensReadsShowsAndCloses) {
    MountRecordBehindSwitch(Spd(128));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+128", "RD 128+128", PRINTS, CLOSE));
}

TEST_F(SpdEepromRead, ShowsAndClosesAfterAFailedRead) {
    MountRecordBehindSwitch(Spd(128));
    m_bus.FailAt(1);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+128", "RD 128+128",
                            "0x10 ERROR: Memory read failed (addr=00128 nBytes=128): no ack 1",
                            "0x10 Error during EEPROM read! addr = 0x80 ", PRINTS, CLOSE));
}

TEST_F(SpdEepromRead, NeitherReadsNorShowsWhenThePathCannotBeOpened) {
    MountRecordBehindSwitch(Spd());
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
    EXPECT_EQ(m_stdout, "");
}

TEST_F(SpdEepromRead, FailsWhenThePathCannotBeClosedThoughItHasShownAll) {
    MountRecordBehindSwitch(Spd(128));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(ShowOnTerminal().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(),
                ElementsAre(SELECT, "RD 0+128", "RD 128+128", PRINTS, CLOSE, CANNOT_CLOSE));
    EXPECT_EQ(m_stdout, ExpectedNamed("spd_registered"));
}

TEST_F(SpdEepromRead, AnswersOnceWhenBothReadAndPathFail) {
    MountRecordBehindSwitch(Spd(128));
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    ASSERT_FALSE(Story().empty());
    EXPECT_EQ(Story().back(), CANNOT_CLOSE);
}

TEST_F(SpdEepromRead, TellsReadErrorsAsTheDeviceAndPathErrorsAsTheCommand) {
    MountRecordBehindSwitch(Spd(128));
    m_bus.FailAt(0);
    m_switch->FailAt("DisableChannels");
    const CSenderLog log;
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    ASSERT_THAT(log.Lines(), testing::Not(IsEmpty()));
    EXPECT_EQ(log.Lines()[1],
              (CSenderLog::Line{"record-eeprom", 0x10, "Error during EEPROM read! addr = 0x0 "}));
    ASSERT_FALSE(log.Lines().empty());
    EXPECT_EQ(log.Lines().back(),
              (CSenderLog::Line{"show-spd-info", 0x30, "  Error when disabling I2C path!\n"}));
}

}  // namespace
