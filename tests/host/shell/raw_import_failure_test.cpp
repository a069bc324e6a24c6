// An import that ends half way: what it tells of what it wrote.
#include "tests/host/shell/raw_import_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using CAccess = CFakeRawDevice::CAccess;

TEST_F(RawImport, TellsWhatAFailedWriteLeftBehind) {
    m_eeprom->before_write = FailAt(0x30);
    EXPECT_EQ(Import(CBytes(0x60, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50\n"
              "  written and read back equal: 0x0..0x2f\n"
              "  not written: 0x30..0x5f\n");
    EXPECT_EQ(m_eeprom->writes.size(), 4U);
    EXPECT_THAT(printed, testing::Not(HasSubstr("verified")));
}

TEST_F(RawImport, TellsWhenTheFirstOrTheLastWriteFailed) {
    m_eeprom->before_write = FailAt(0);
    EXPECT_EQ(Import(CBytes(0x20, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50\n"
              "  not written: 0x0..0x1f\n");
    m_eeprom->before_write = FailAt(0x10);
    EXPECT_EQ(Import(CBytes(0x20, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50\n"
              "  written and read back equal: 0x0..0xf\n"
              "  not written: 0x10..0x1f\n");
}

TEST_F(RawImport, TellsOfAPageThatAFailedWriteHalfChanged) {
    m_eeprom->before_write = [this](uint32_t offset) {
        if (offset == 0x10) {
            m_eeprom->contents[0x10] = 0xFF;
            throw CDiagException("no acknowledge from 0x50");
        }
    };
    EXPECT_EQ(Import(CBytes(0x30, 0xFF)), EXIT_FAILED);
    EXPECT_THAT(errors, testing::StartsWith("/eeprom: import failed: no acknowledge from 0x50\n"
                                            "  written and read back equal: 0x0..0xf\n"
                                            "  written but read back different: 0x10..0x1f\n"
                                            "  not written: 0x20..0x2f\n"
                                            "reads back as:\n"));
}

TEST_F(RawImport, LeavesInDoubtWhatCannotBeReadAfterAFailedWrite) {
    m_eeprom->before_write = FailAt(0x10);
    m_eeprom->before_read = FailAt(0x10);
    EXPECT_EQ(Import(CBytes(0x30, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50; reading back: no acknowledge from "
              "0x50\n"
              "  written and read back equal: 0x0..0xf\n"
              "  in doubt: 0x10..0x1f\n"
              "  not written: 0x20..0x2f\n");
}

TEST_F(RawImport, CtrlCEndsItBetweenTwoPagesAndReadsBackWhatWasWritten) {
    m_eeprom->before_write = CtrlCAt(0x10);
    EXPECT_EQ(Import(CBytes(0x40, 0xFF)), EXIT_ABORTED);
    EXPECT_EQ(errors,
              "/eeprom: import aborted\n"
              "  written and read back equal: 0x0..0x1f\n"
              "  not written: 0x20..0x3f\n");
    EXPECT_THAT(m_eeprom->writes, ElementsAre(CAccess(0, 16), CAccess(0x10, 16)));
}

TEST_F(RawImport, CtrlCEndsTheReadingBack) {
    m_eeprom->before_read = CtrlCAt(0x10);
    EXPECT_EQ(Import(CBytes(0x40, 0xFF)), EXIT_ABORTED);
    EXPECT_EQ(errors,
              "/eeprom: import aborted\n"
              "  written and read back equal: 0x0..0x1f\n"
              "  written but not read back: 0x20..0x3f\n");
}

TEST_F(RawImport, PassesWhenCtrlCComesTooLate) {
    m_eeprom->before_read = CtrlCAt(0x10);
    EXPECT_EQ(Import(CBytes(0x20, 0xFF)), EXIT_PASSED);
    EXPECT_THAT(printed, testing::EndsWith("wrote and verified 32 bytes in 2 ranges of /eeprom\n"));
}

TEST_F(RawImport, TellsWhatReadsBackDifferent) {
    m_eeprom->stuck = {{0x13, 0x00}, {0x15, 0x01}};
    EXPECT_EQ(Import(CBytes(0x30, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed\n"
              "  written and read back equal: 0x0..0xf, 0x20..0x2f\n"
              "  written but read back different: 0x10..0x1f\n"
              "reads back as:\n"
              "  0x10..0x1f: 2 of 16 bytes\n"
              "    wrote 0x10:  ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
              "    read  0x10:  ff ff ff 00 ff 01 ff ff ff ff ff ff ff ff ff ff\n");
}

TEST_F(RawImport, TellsWhatCouldNotBeReadBack) {
    m_eeprom->before_read = FailAt(0x10);
    EXPECT_EQ(Import(CBytes(0x30, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50\n"
              "  written and read back equal: 0x0..0xf, 0x20..0x2f\n"
              "  written but not read back: 0x10..0x1f\n");
}

TEST_F(RawImport, TriesAReadThatFailedAgain) {
    bool failed = false;
    m_eeprom->before_read = [&failed](uint32_t offset) {
        if (offset == 0x10 && !std::exchange(failed, true)) {
            throw CDiagException("no acknowledge from 0x50");
        }
    };
    EXPECT_EQ(Import(CBytes(0x30, 0xFF)), EXIT_PASSED);
    EXPECT_THAT(printed, testing::EndsWith("wrote and verified 48 bytes in 3 ranges of /eeprom\n"));
}

TEST_F(RawImport, GivesUpReadingBackADeviceThatIsGone) {
    m_eeprom->before_read = [this](uint32_t) {
        if (!m_eeprom->writes.empty()) {
            throw CDiagException("no acknowledge from 0x50");
        }
    };
    EXPECT_EQ(Import(CBytes(0x80, 0xFF)), EXIT_FAILED);
    EXPECT_THAT(errors, HasSubstr("\n  written but not read back: 0x0..0x7f\n"));
    EXPECT_EQ(m_eeprom->reads.size(), 1U + 2 * 2);
}

TEST_F(RawImport, TellsBothErrorsWhenWritingAndReadingBackFail) {
    m_eeprom->before_write = FailAt(0x20);
    m_eeprom->before_read = [](uint32_t offset) {
        if (offset == 0x10) {
            throw CDiagException("bus stuck low");
        }
    };
    EXPECT_EQ(Import(CBytes(0x40, 0xFF)), EXIT_FAILED);
    EXPECT_EQ(errors,
              "/eeprom: import failed: no acknowledge from 0x50; reading back: bus stuck low\n"
              "  written and read back equal: 0x0..0xf\n"
              "  written but not read back: 0x10..0x1f\n"
              "  not written: 0x20..0x3f\n");
}

}  // namespace
