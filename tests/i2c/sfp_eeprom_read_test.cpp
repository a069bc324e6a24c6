// Reading the serial ID of a module: steps and failures.
#include <gmock/gmock.h>

#include <cstdio>

#include "tests/i2c/sfp_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SfpEepromRead : public CSfpEepromTest {
  protected:
    using CRecord = CGuardedRecord<sfp_serial_id_t>;

    SfpEepromRead() { Store(m_image); }

    static CLogCapture::Line ReadError(size_t addr) {
        char text[64];
        std::snprintf(text, sizeof text, "ERROR: Error during EEPROM read! addr = 0x%zx ", addr);
        return {0x10, text};
    }

    const Bytes m_image = ImageNamed("sfp_10g");
};

TEST_F(SfpEepromRead, ReadsWholeStepsOfEverySize) {
    for (unsigned int step = 1; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        m_journal.Clear();
        i2c_eeprom_attr_t attr = Sfp(static_cast<uint8_t>(step));
        CPlaced eeprom(m_bus, &attr);
        CRecord record;
        ASSERT_TRUE(eeprom.ReadContent(record.Get()));
        ASSERT_EQ(Calls(), StepCalls(SIZE, step));
        ASSERT_EQ(record.Bytes(), m_image);
        ASSERT_TRUE(record.IsIntactBehind());
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(SfpEepromRead, AnswersTheSameWhateverTheStep) {
    const std::string expected = ExpectedNamed("sfp_10g");
    for (unsigned int step = 0; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        MountRecord(Sfp(static_cast<uint8_t>(step)));
        m_log.Clear();
        ASSERT_EQ(Show().bytes, Bytes{SUCCESS});
        ASSERT_EQ(Printed(), expected);
        ASSERT_EQ(Type().bytes, TypeAnswer(SUCCESS, 10));
    }
}

TEST_F(SfpEepromRead, SplitsStepsByTheWritePage) {
    i2c_eeprom_attr_t attr = Sfp(100);
    attr.wr_pg_size = 64;
    CPlaced eeprom(m_bus, &attr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadContent(record.Get()));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+64", "RD 64+36", "RD 100+64", "RD 164+36"));
    EXPECT_EQ(record.Bytes(), m_image);
    EXPECT_TRUE(record.IsIntactBehind());
}

TEST_F(SfpEepromRead, ReadsByteByByteWithoutAttributes) {
    CPlaced eeprom(m_bus, nullptr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadContent(record.Get()));
    EXPECT_EQ(Calls(), StepCalls(SIZE, 1));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SfpEepromRead, EndsWithATransferSizeOf0) {
    i2c_eeprom_attr_t attr = Sfp(0);
    CPlaced eeprom(m_bus, &attr);
    CRecord record;
    EXPECT_TRUE(eeprom.ReadContent(record.Get()));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SfpEepromRead, KeepsWhatWasReadBeforeTheStepThatFails) {
    for (const uint8_t step : Bytes{1, 5, 32, 100, 127, 128, 255}) {
        for (size_t at = 0; at < SIZE; at += step) {
            SCOPED_TRACE("xfer_size " + std::to_string(step) + ", step at " + std::to_string(at));
            i2c_eeprom_attr_t attr = Sfp(step);
            CPlaced eeprom(m_bus, &attr);
            m_log.Clear();
            m_journal.Clear();
            FailTransfer(at / step);
            CRecord record;
            ASSERT_FALSE(eeprom.ReadContent(record.Get()));
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

TEST_F(SfpEepromRead, NamesTheStepAndKeepsItsFirstTransfers) {
    i2c_eeprom_attr_t attr = Sfp(64);
    attr.wr_pg_size = 16;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(6);  // at address 96
    CRecord record;
    EXPECT_FALSE(eeprom.ReadContent(record.Get()));
    EXPECT_EQ(Messages(),
              (CLines{{0x10, "ERROR: Memory read failed (addr=00096 nBytes=16): no ack 6"},
                      {0x10, "ERROR: Error during EEPROM read! addr = 0x40 "}}));
    EXPECT_EQ(record.Bytes(), CutAt(m_image, 96));
}

TEST_F(SfpEepromRead, FailsWhenOnlyBytesBehindTheRecordCannotBeRead) {
    i2c_eeprom_attr_t attr = Sfp(96);
    attr.wr_pg_size = 32;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(4);  // at address 128
    CRecord record;
    EXPECT_FALSE(eeprom.ReadContent(record.Get()));
    ASSERT_FALSE(Calls().empty());
    EXPECT_EQ(Calls().back(), "RD 128+32");
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().back(), ReadError(96));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(SfpEepromRead, LeavesThePathToItsCaller) {
    MountRecordBehindSwitch(Sfp(64));
    CRecord record;
    EXPECT_TRUE(Device().ReadContent(record.Get()));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+64", "RD 64+64"));
}

TEST_F(SfpEepromRead, TellsReadErrorsAsTheDevice) {
    MountRecord(Sfp());
    m_bus.FailAt(0);
    const CSenderLog log;
    EXPECT_EQ(Type().bytes, TypeAnswer(FAIL, 10));
    ASSERT_THAT(log.Lines(), SizeIs(2));
    EXPECT_EQ(log.Lines()[1], (CSenderLog::Line{"record-eeprom", 0x10,
                                                "ERROR: Error during EEPROM read! addr = 0x0 "}));
}

}  // namespace
