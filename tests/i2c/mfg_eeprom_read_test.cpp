// Reading and checking the record of a manufacturing EEPROM.
#include <gmock/gmock.h>

#include "tests/i2c/mfg_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MfgEepromRead : public CMfgEepromTest {
  protected:
    using CRecord = CGuardedRecord<CTarnInventory>;

    MfgEepromRead() { Store(m_image); }

    // Reads with a device of its own; it must not touch `ok` unless the record is good.
    bool ReadNCheck(i2c_eeprom_attr_t attr, CRecord& record) {
        CPlaced eeprom(m_bus, &attr);
        bool was_false = false;
        bool was_true = true;
        const bool good = eeprom.ReadNCheck(record.Get(), was_false);
        EXPECT_EQ(was_false, good);
        if (!good) {
            // Once more, for what a failure leaves of the other value.
            CRecord ignored;
            EXPECT_FALSE(eeprom.ReadNCheck(ignored.Get(), was_true));
            EXPECT_TRUE(was_true);
        }
        return good;
    }
    static CLogCapture::Line ReadError(size_t addr) {
        char text[64];
        std::snprintf(text, sizeof text, "Error during EEPROM read! addr = 0x%zx ", addr);
        return {0x10, text};
    }
    static CLogCapture::Line ChecksumError(unsigned int calculated, unsigned int stored) {
        char text[80];
        std::snprintf(text, sizeof text, "EEPROM checksum error: calculated 0x%04X, stored 0x%04X",
                      calculated, stored);
        return {0x10, text};
    }

    const Bytes m_image = ImageNamed("mfg");
};

TEST_F(MfgEepromRead, ReadsWholeStepsOfEverySize) {
    for (unsigned int step = 1; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        m_journal.Clear();
        CRecord record;
        ASSERT_TRUE(ReadNCheck(Mfg(static_cast<uint8_t>(step)), record));
        ASSERT_EQ(Calls(), StepCalls(SIZE, step));
        ASSERT_EQ(record.Bytes(), m_image);
        ASSERT_TRUE(record.IsIntactBehind());
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MfgEepromRead, ReadsThreeBlocksOf32Bytes) {
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(32), record));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+32", "RD 32+32", "RD 64+32"));
}

TEST_F(MfgEepromRead, Reads96SingleBytes) {
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(1), record));
    EXPECT_THAT(Calls(), SizeIs(96));
    ASSERT_FALSE(Calls().empty());
    EXPECT_EQ(Calls().back(), "RD 95+1");
}

TEST_F(MfgEepromRead, AsksForAWholeLastStepBeyondTheRecord) {
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(40), record));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+40", "RD 40+40", "RD 80+40"));
    EXPECT_EQ(record.Bytes(), m_image);
    EXPECT_TRUE(record.IsIntactBehind());
}

TEST_F(MfgEepromRead, SplitsStepsByTheWritePage) {
    i2c_eeprom_attr_t attr = Mfg(40);
    attr.wr_pg_size = 32;
    CRecord record;
    EXPECT_TRUE(ReadNCheck(attr, record));
    EXPECT_THAT(Calls(),
                ElementsAre("RD 0+32", "RD 32+8", "RD 40+32", "RD 72+8", "RD 80+32", "RD 112+8"));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(MfgEepromRead, ReadsByteByByteWithoutAttributes) {
    CPlaced eeprom(m_bus, nullptr);
    CRecord record;
    bool ok = false;
    EXPECT_TRUE(eeprom.ReadNCheck(record.Get(), ok));
    EXPECT_TRUE(ok);
    EXPECT_EQ(Calls(), StepCalls(SIZE, 1));
}

TEST_F(MfgEepromRead, EndsWithATransferSizeOf0) {
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(0), record));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(MfgEepromRead, SaysNothingOfAGoodRecord) {
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(), record));
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(MfgEepromRead, LeavesThePathToItsCaller) {
    MountRecordBehindSwitch(Mfg(96));
    CRecord record;
    bool ok = false;
    EXPECT_TRUE(Device().ReadNCheck(record.Get(), ok));
    EXPECT_THAT(Calls(), ElementsAre("RD 0+96"));
}

// Transfers that fail.

TEST_F(MfgEepromRead, KeepsWhatWasReadBeforeTheStepThatFails) {
    for (const uint8_t step : Bytes{1, 7, 32, 40, 95, 96, 128}) {
        for (size_t at = 0; at < SIZE; at += step) {
            SCOPED_TRACE("xfer_size " + std::to_string(step) + ", step at " + std::to_string(at));
            i2c_eeprom_attr_t attr = Mfg(step);
            CPlaced eeprom(m_bus, &attr);
            m_log.Clear();
            m_journal.Clear();
            FailTransfer(at / step);
            CRecord record;
            bool ok = true;
            ASSERT_FALSE(eeprom.ReadNCheck(record.Get(), ok));
            ASSERT_TRUE(ok);
            ASSERT_EQ(record.Bytes(), CutAt(m_image, at));
            ASSERT_TRUE(record.IsIntactBehind());
            ASSERT_THAT(Calls(), SizeIs(at / step + 1));
            // The failed transfer tells first why; the checksum is not looked at.
            ASSERT_THAT(Messages(), SizeIs(2));
            ASSERT_EQ(Messages()[0].first, 0x10U);
            ASSERT_EQ(Messages()[1], ReadError(at));
        }
    }
}

TEST_F(MfgEepromRead, NamesTheStepWhoseSecondTransferFails) {
    i2c_eeprom_attr_t attr = Mfg(40);
    attr.wr_pg_size = 32;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(3);
    CRecord record;
    bool ok = false;
    EXPECT_FALSE(eeprom.ReadNCheck(record.Get(), ok));
    EXPECT_EQ(Messages(),
              (CLines{{0x10, "ERROR: Memory read failed (addr=00072 nBytes=8): no ack 3"},
                      ReadError(40)}));
    EXPECT_EQ(record.Bytes(), CutAt(m_image, 72));
}

TEST_F(MfgEepromRead, FailsWhenOnlyBytesBehindTheRecordCannotBeRead) {
    i2c_eeprom_attr_t attr = Mfg(64);
    attr.wr_pg_size = 32;
    CPlaced eeprom(m_bus, &attr);
    FailTransfer(3);
    CRecord record;
    bool ok = false;
    EXPECT_FALSE(eeprom.ReadNCheck(record.Get(), ok));
    EXPECT_FALSE(ok);
    ASSERT_FALSE(Calls().empty());
    EXPECT_EQ(Calls().back(), "RD 96+32");
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().back(), ReadError(64));
}

// The checksum.

TEST_F(MfgEepromRead, FailsTheChecksumOfABlankChip) {
    Store(Bytes(SIZE, 0xFF));
    CRecord record(0);
    EXPECT_FALSE(ReadNCheck(Mfg(), record));
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().front(),
              (CLogCapture::Line{0x10, "EEPROM checksum error: calculated 0x4B84, stored 0xFFFF"}));
    EXPECT_EQ(record.Bytes(), Bytes(SIZE, 0xFF));
}

TEST_F(MfgEepromRead, FailsTheChecksumOfAnErasedChip) {
    Store(Bytes(SIZE, 0x00));
    CRecord record;
    EXPECT_FALSE(ReadNCheck(Mfg(), record));
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().front(),
              (CLogCapture::Line{0x10, "EEPROM checksum error: calculated 0x4BBE, stored 0x0000"}));
}

TEST_F(MfgEepromRead, TellsBothChecksumsWhenOneByteIsChanged) {
    m_bus.At(5) ^= 0x01;
    CRecord record;
    EXPECT_FALSE(ReadNCheck(Mfg(), record));
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().front(),
              (CLogCapture::Line{0x10, "EEPROM checksum error: calculated 0x5083, stored 0x4534"}));
}

TEST_F(MfgEepromRead, SeesEveryBitThatIsWrong) {
    for (size_t bit = 0; bit < SIZE * 8; ++bit) {
        SCOPED_TRACE("bit " + std::to_string(bit % 8) + " of byte " + std::to_string(bit / 8));
        Bytes image = m_image;
        image[bit / 8] ^= static_cast<uint8_t>(1U << bit % 8);
        Store(image);
        m_log.Clear();
        i2c_eeprom_attr_t attr = Mfg(96);
        CPlaced eeprom(m_bus, &attr);
        CRecord record;
        bool ok = false;
        ASSERT_FALSE(eeprom.ReadNCheck(record.Get(), ok));
        ASSERT_FALSE(ok);
        const unsigned int stored = image[94] * 256U + image[95];
        ASSERT_EQ(Messages(),
                  (CLines{ChecksumError(GenibusByDivision({image.begin(), image.begin() + 94}),
                                        stored)}));
    }
}

TEST_F(MfgEepromRead, StoresTheHighByteOfTheChecksumFirst) {
    std::swap(m_bus.At(94), m_bus.At(95));
    CRecord record;
    EXPECT_FALSE(ReadNCheck(Mfg(), record));
    ASSERT_FALSE(Messages().empty());
    EXPECT_EQ(Messages().front(),
              (CLogCapture::Line{0x10, "EEPROM checksum error: calculated 0x4534, stored 0x3445"}));
}

TEST_F(MfgEepromRead, DoesNotLookBehindTheRecord) {
    for (size_t at = SIZE; at < 2 * SIZE; ++at) {
        m_bus.At(at) = static_cast<uint8_t>(~m_bus.At(at));
    }
    CRecord record;
    EXPECT_TRUE(ReadNCheck(Mfg(128), record));
    EXPECT_EQ(record.Bytes(), m_image);
}

TEST_F(MfgEepromRead, TellsItsErrorsAsTheDevice) {
    MountRecord(Mfg());
    m_bus.At(0) ^= 0x01;
    const CSenderLog log;
    EXPECT_EQ(Ask("get-serial-num").bytes, Bytes{FAIL});
    m_bus.FailAt(m_bus.Xfers().size());
    EXPECT_EQ(Ask("get-serial-num").bytes, Bytes{FAIL});
    ASSERT_THAT(log.Lines(), SizeIs(3));
    ASSERT_FALSE(log.Lines().empty());
    EXPECT_EQ(log.Lines()[0],
              (CSenderLog::Line{"record-eeprom", 0x10,
                                "EEPROM checksum error: calculated 0xC2C5, stored 0x4534"}));
    EXPECT_EQ(log.Lines()[2],
              (CSenderLog::Line{"record-eeprom", 0x10, "Error during EEPROM read! addr = 0x0 "}));
}

}  // namespace
