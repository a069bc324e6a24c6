// The command "show-manuf-info".
#include <gmock/gmock.h>

#include "tests/i2c/mfg_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class MfgEepromShow : public CMfgEepromTest {
  protected:
    MfgEepromShow() { Store(ImageNamed("mfg")); }
    CAnswer Show() { return Ask("show-manuf-info"); }
};

TEST_F(MfgEepromShow, PrintsAGoodRecord) {
    MountRecord(Mfg());
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_EQ(Printed(), ExpectedNamed("mfg"));
}

TEST_F(MfgEepromShow, PrintsTheSameWhateverTheStep) {
    const std::string expected = ExpectedNamed("mfg");
    for (unsigned int step = 0; step <= 255; ++step) {
        SCOPED_TRACE("xfer_size " + std::to_string(step));
        MountRecord(Mfg(static_cast<uint8_t>(step)));
        m_log.Clear();
        ASSERT_EQ(Show().bytes, Bytes{SUCCESS});
        ASSERT_EQ(Printed(), expected);
    }
}

TEST_F(MfgEepromShow, PrintsABlankChipAndFails) {
    MountRecord(Mfg());
    Store(Bytes(SIZE, 0xFF));
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_EQ(Printed(), ExpectedNamed("mfg_blank"));
}

TEST_F(MfgEepromShow, PrintsAChipThatDoesNotAnswerAs0xFFAndFails) {
    MountRecord(Mfg());
    m_bus.FailAt(0);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_EQ(Printed(), ExpectedNamed("mfg_blank"));
}

TEST_F(MfgEepromShow, PrintsWhatWasReadAndTheRestAs0xFF) {
    MountRecord(Mfg(16));
    m_bus.FailAt(1);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    const std::string good = ExpectedNamed("mfg");
    const std::string blank = ExpectedNamed("mfg_blank");
    const std::string border = "product_num  : ";
    EXPECT_EQ(Printed(), good.substr(0, good.find(border)) + blank.substr(blank.find(border)));
}

TEST_F(MfgEepromShow, PrintsARecordWithAWrongChecksumAndFails) {
    MountRecord(Mfg());
    m_bus.At(95) = 0x35;
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    std::string expected = ExpectedNamed("mfg");
    expected.replace(expected.find("4534"), 4, "4535");
    EXPECT_EQ(Printed(), expected);
}

TEST_F(MfgEepromShow, DoesNotPrintTheReservedByte) {
    MountRecord(Mfg());
    Store(ImageWith(85, Bytes{0x5B}));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    std::string expected = ExpectedNamed("mfg");
    char checksum[8];
    std::snprintf(checksum, sizeof checksum, "%02x%02x", m_bus.At(94), m_bus.At(95));
    expected.replace(expected.find("4534"), 4, checksum);
    EXPECT_EQ(Printed(), expected);
}

TEST_F(MfgEepromShow, EndsATextAtAZeroByte) {
    MountRecord(Mfg());
    Store(ImageWith(16, std::string("QB-32\0hidden", 12)));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Printed(), HasSubstr("\nproduct_num  : QB-32\nbatch_num    : LOT"));
}

TEST_F(MfgEepromShow, PrintsBytesOfATextThatCannotBePrintedAsTheyAre) {
    MountRecord(Mfg());
    Store(ImageWith(72, Bytes{0x01, 0x1B, '%', 's', 0x7F, 0x80, '\n', 0xFF}));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Printed(), HasSubstr("manu_date    : \x01\x1B%s\x7F\x80\n\xFF\nproduct_code : "));
}

TEST_F(MfgEepromShow, PrintsEveryLineAtThePrintLevel) {
    MountRecord(Mfg());
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    ASSERT_THAT(Messages(), Not(IsEmpty()));
    for (const CLogCapture::Line& line : Messages()) {
        EXPECT_EQ(line.first, 0xB0U) << line.second;
    }
}

// The path.

TEST_F(MfgEepromShow, OpensReadsPrintsAndCloses) {
    MountRecordBehindSwitch(Mfg(96));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+96", PRINTS, CLOSE));
}

TEST_F(MfgEepromShow, ClosesAfterAFailedRead) {
    MountRecordBehindSwitch(Mfg(96));
    m_bus.FailAt(0);
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+96",
                                     "0x10 ERROR: Memory read failed (addr=00000 nBytes=96): no "
                                     "ack 0",
                                     "0x10 Error during EEPROM read! addr = 0x0 ", PRINTS, CLOSE));
}

TEST_F(MfgEepromShow, ClosesAfterAWrongChecksum) {
    MountRecordBehindSwitch(Mfg(96));
    m_bus.At(5) ^= 0x01;
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+96",
                                     "0x10 EEPROM checksum error: calculated 0x5083, stored 0x4534",
                                     PRINTS, CLOSE));
}

TEST_F(MfgEepromShow, NeitherReadsNorPrintsWhenThePathCannotBeOpened) {
    MountRecordBehindSwitch(Mfg());
    m_switch->FailAt("SelChannel");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, CANNOT_OPEN));
}

TEST_F(MfgEepromShow, FailsWhenThePathCannotBeClosedThoughItHasPrintedAll) {
    MountRecordBehindSwitch(Mfg(96));
    m_switch->FailAt("DisableChannels");
    EXPECT_EQ(Show().bytes, Bytes{FAIL});
    EXPECT_THAT(Story(), ElementsAre(SELECT, "RD 0+96", PRINTS, CLOSE, CANNOT_CLOSE));
    EXPECT_EQ(Printed(), ExpectedNamed("mfg"));
}

}  // namespace
