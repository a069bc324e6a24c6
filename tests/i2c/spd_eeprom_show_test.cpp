// What "show-spd-info" prints.
#include <gmock/gmock.h>

#include <set>

#include "tests/i2c/spd_eeprom_test.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class SpdEepromShow : public CSpdEepromTest {};

// Whole outputs as an operator sees them, one for each kind of module section.
class SpdEepromOutput : public CSpdEepromTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(, SpdEepromOutput,
                         testing::Values("spd_registered", "spd_unbuffered", "spd_raw_section"),
                         NameOfText);

TEST_P(SpdEepromOutput, IsThatOfItsImage) {
    MountRecord(Spd());
    Store(ImageNamed(GetParam()));
    EXPECT_EQ(ShowOnTerminal().bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_stdout, ExpectedNamed(GetParam()));
}

TEST_F(SpdEepromShow, ShowsAChipThatDoesNotAnswerAs0xFF) {
    MountRecord(Spd());
    m_bus.FailAt(0);
    EXPECT_EQ(ShowOnTerminal().bytes, Bytes{FAIL});
    EXPECT_EQ(m_stdout, ExpectedNamed("spd_unread"));
}

TEST_F(SpdEepromShow, ShowsABlankChipAsGood) {
    MountRecord(Spd());
    Store(Bytes(SIZE, 0xFF));
    EXPECT_EQ(ShowOnTerminal().bytes, Bytes{SUCCESS});
    EXPECT_EQ(m_stdout, ExpectedNamed("spd_unread"));
}

TEST_F(SpdEepromShow, ShowsWhatWasReadAndTheRestAs0xFF) {
    MountRecord(Spd(128));
    Store(ImageNamed("spd_registered"));
    m_bus.FailAt(1);
    EXPECT_EQ(ShowOnTerminal().bytes, Bytes{FAIL});
    const std::string expected = ExpectedNamed("spd_registered");
    const std::string unread = ExpectedNamed("spd_unread");
    // Both halves meet at byte 128.
    const std::string border = "128-145: ";
    EXPECT_EQ(m_stdout,
              expected.substr(0, expected.find(border)) + unread.substr(unread.find(border)));
}

TEST_F(SpdEepromShow, DoesNotJudgeTheChecksum) {
    MountRecord(Spd());
    Bytes image = ImageNamed("spd_unbuffered");
    image[126] = 0x12;
    image[127] = 0xED;
    Store(image);
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    EXPECT_THAT(Printed(), HasSubstr("126-127: 12 ed   SPD CRC\n"));
    EXPECT_THAT(m_log.Texts(LW_ERR_TEST), IsEmpty());
}

// Standard output.

TEST_F(SpdEepromShow, WritesTheReservedBytesToStandardOutputAlone) {
    MountRecord(Spd());
    Store(ImageNamed("spd_registered"));
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    const std::string reserved =
        "39 - 59: 16 1d 24 2b 32 39 40 47 4e 55 5c 63 6a 71 78 7f 86 8d 94 9b a2 \n\n";
    EXPECT_EQ(m_stdout, reserved);

    std::string rest = ExpectedNamed("spd_registered");
    const size_t at = rest.find(reserved);
    ASSERT_NE(at, std::string::npos);
    rest.erase(at, reserved.size());
    EXPECT_EQ(Printed(), rest);
}

TEST_F(SpdEepromShow, WritesThemToStandardOutputThoughNobodyTakesTheLog) {
    CPlaced eeprom(m_bus, nullptr);
    CGuardedRecord<ddr3_spd_eeprom_t> record;
    CDiagLog::Instance().RemoveSink(m_log);
    CDiagLog::Instance().RemoveSink(m_journal);
    testing::internal::CaptureStdout();
    eeprom.ShowSPD(record.Get());
    const std::string output = testing::internal::GetCapturedStdout();
    CDiagLog::Instance().AddSink(m_journal);
    CDiagLog::Instance().AddSink(m_log);
    EXPECT_EQ(output,
              "39 - 59: ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff \n\n");
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(SpdEepromShow, PrintsEveryLineAsTheDevice) {
    MountRecord(Spd());
    Store(ImageNamed("spd_registered"));
    const CSenderLog log;
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    ASSERT_THAT(log.Lines(), Not(IsEmpty()));
    for (const CSenderLog::Line& line : log.Lines()) {
        EXPECT_EQ(line.sender, "record-eeprom") << line.text;
        EXPECT_EQ(line.word, 0xB0U) << line.text;
    }
}

TEST_F(SpdEepromShow, LeavesTheImageAlone) {
    CPlaced eeprom(m_bus, nullptr);
    CGuardedRecord<ddr3_spd_eeprom_t> record(0x5C);
    testing::internal::CaptureStdout();
    eeprom.ShowSPD(record.Get());
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(record.Bytes(), Bytes(SIZE, 0x5C));
    EXPECT_TRUE(record.IsIntactBehind());
}

// The module section goes by the whole of byte 3.
TEST_F(SpdEepromShow, TakesTheModuleSectionForWhatTheModuleTypeSays) {
    const std::set<unsigned int> registered = {1, 5};
    const std::set<unsigned int> unbuffered = {2, 3, 4, 6};
    MountRecord(Spd());
    for (unsigned int type = 0; type <= 255; ++type) {
        SCOPED_TRACE("module type " + std::to_string(type));
        m_bus.At(3) = static_cast<uint8_t>(type);
        m_log.Clear();
        ASSERT_EQ(Show().bytes, Bytes{SUCCESS});
        const std::string printed = Printed();
        const auto shows = [&printed](const char* text) {
            return printed.find(text) != std::string::npos;
        };
        ASSERT_EQ(shows("(Registered)"), registered.contains(type));
        ASSERT_EQ(shows("rcw[7]"), registered.contains(type));
        ASSERT_EQ(shows("(Unbuffered)"), unbuffered.contains(type));
        ASSERT_EQ(shows("60 -116: "), !registered.contains(type) && !unbuffered.contains(type));
    }
}

TEST_F(SpdEepromShow, GoesOnInTheLineOfARawSection) {
    MountRecord(Spd());
    Bytes image(SIZE);
    image[3] = 0x0B;
    image[60] = 0xAB;
    image[116] = 0xCD;
    Store(image);
    EXPECT_EQ(Show().bytes, Bytes{SUCCESS});
    const std::string printed = Printed();
    const size_t at = printed.find("60 -116: ");
    ASSERT_NE(at, std::string::npos);
    EXPECT_THAT(printed.substr(at), StartsWith("60 -116: ab" + std::string(110, '0') +
                                               "cd117    : 00 Module MfgID Code LSB"));
}

}  // namespace
