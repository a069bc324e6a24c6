#include "tests/host/shell/raw_import_test.h"

#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using CAccess = CFakeRawDevice::CAccess;

TEST_F(RawImport, WritesOnlyThePagesThatDifferAndReadsThemBack) {
    const CBytes wanted = Changed({{0x12, 0xFF}, {0x14, 0xFE}, {0x80, 0xFD}});
    EXPECT_EQ(Import(wanted), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/eeprom differs in 2 ranges:\n"
              "  0x10..0x1f: 2 of 16 bytes\n"
              "    old 0x10:  10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f\n"
              "    new 0x10:  10 11 ff 13 fe 15 16 17 18 19 1a 1b 1c 1d 1e 1f\n"
              "  0x80..0x8f: 1 of 16 bytes\n"
              "    old 0x80:  80 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f\n"
              "    new 0x80:  fd 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f\n"
              "wrote and verified 32 bytes in 2 ranges of /eeprom\n");
    EXPECT_EQ(errors, "");
    EXPECT_EQ(m_eeprom->contents, wanted);
    EXPECT_THAT(m_eeprom->writes, ElementsAre(CAccess(0x10, 16), CAccess(0x80, 16)));
    EXPECT_THAT(m_eeprom->reads,
                ElementsAre(CAccess(0, 256), CAccess(0x10, 16), CAccess(0x80, 16)));
}

TEST_F(RawImport, WritesEachPageInOneGo) {
    EXPECT_EQ(Import(CBytes(40, 0xFF), "0x1c"), EXIT_PASSED);
    EXPECT_THAT(m_eeprom->writes, ElementsAre(CAccess(0x1C, 4), CAccess(0x20, 16),
                                              CAccess(0x30, 16), CAccess(0x40, 4)));
    EXPECT_EQ(m_eeprom->contents[0x1B], 0x1B);
    EXPECT_EQ(m_eeprom->contents[0x1C], 0xFF);
    EXPECT_EQ(m_eeprom->contents[0x43], 0xFF);
    EXPECT_EQ(m_eeprom->contents[0x44], 0x44);
}

TEST_F(RawImport, TakesADeviceWithoutPagesByteByByte) {
    m_eeprom->page = 0;
    EXPECT_EQ(Import({0xF0, 0xF1}), EXIT_PASSED);
    EXPECT_THAT(m_eeprom->writes, ElementsAre(CAccess(0, 1), CAccess(1, 1)));
}

TEST_F(RawImport, BringsBackWhatWasExported) {
    EXPECT_EQ(Run("export eeprom " + File("saved")), EXIT_PASSED);
    const CBytes saved = m_eeprom->contents;
    std::fill(m_eeprom->contents.begin(), m_eeprom->contents.end(), uint8_t{0xFF});
    EXPECT_EQ(Run("import eeprom/memory " + File("saved") + " --yes"), EXIT_PASSED);
    EXPECT_EQ(m_eeprom->contents, saved);
}

TEST_F(RawImport, WritesNothingWhenNothingDiffers) {
    EXPECT_EQ(Import({0x10, 0x11, 0x12}, "16"), EXIT_PASSED);
    EXPECT_EQ(printed, "nothing to change: /eeprom holds these 3 bytes already\n");
    EXPECT_THAT(m_eeprom->writes, IsEmpty());
}

TEST_F(RawImport, ReachesTheLastByte) {
    EXPECT_EQ(Import({0xEE}, "0xff"), EXIT_PASSED);
    EXPECT_EQ(m_eeprom->contents.back(), 0xEE);
    EXPECT_EQ(m_eeprom->contents.size(), 256U);
}

TEST_F(RawImport, ReadsInPieces) {
    m_eeprom->contents.resize(600, 0xEE);
    m_eeprom->page = 512;
    EXPECT_EQ(Import(CBytes(300, 0x55), "200"), EXIT_PASSED);
    EXPECT_THAT(m_eeprom->reads, ElementsAre(CAccess(200, 256), CAccess(456, 44), CAccess(200, 256),
                                             CAccess(456, 44)));
    EXPECT_THAT(m_eeprom->writes, ElementsAre(CAccess(200, 300)));
}

TEST_F(RawImport, RefusesAFileThatDoesNotFit) {
    RefusesAndTouchesNothing(
        "import eeprom " + Make(CBytes(257)) + " --yes",
        File("data") + " holds 257 bytes, but /eeprom has only 256 bytes from 0x0 on");
    RefusesAndTouchesNothing(
        "import eeprom " + Make(CBytes(3)) + " 254 --yes",
        File("data") + " holds 3 bytes, but /eeprom has only 2 bytes from 0xfe on");
}

TEST_F(RawImport, RefusesOffsetsOutsideTheMemory) {
    const std::string line = "import eeprom " + Make({1}) + " --yes ";
    const std::string fits = " is out of range, 0x0 to 0xff fits";
    RefusesAndTouchesNothing(line + "256", "/eeprom: offset: 256" + fits);
    RefusesAndTouchesNothing(line + "0x100000000", "/eeprom: offset: 0x100000000" + fits);
    RefusesAndTouchesNothing(line + "-1", "/eeprom: offset: -1" + fits);
    for (const std::string offset : {"99999999999999999999", "0x", "ten", "1.5", "''"}) {
        EXPECT_EQ(Run(line + offset), EXIT_USAGE) << offset;
        EXPECT_THAT(errors, StartsWith("/eeprom: offset: ")) << offset;
    }
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
}

TEST_F(RawImport, RefusesFilesThatCannotBeTaken) {
    RefusesAndTouchesNothing("import eeprom " + File("missing") + " --yes",
                             File("missing") + ": No such file or directory");
    RefusesAndTouchesNothing("import eeprom " + m_folder.Path().string() + " --yes",
                             m_folder.Path().string() + " is a directory");
    RefusesAndTouchesNothing("import eeprom " + Make({}) + " --yes", File("data") + " is empty");
    RefusesAndTouchesNothing("import eeprom /dev/zero --yes", "/dev/zero is not a plain file");
}

TEST_F(RawImport, RefusesAReadOnlyDeviceBeforeAnything) {
    m_eeprom->read_only = true;
    RefusesAndTouchesNothing("import eeprom " + File("missing") + " --yes", "/eeprom is read-only");
}

TEST_F(RawImport, RefusesNodesWithoutRawContents) {
    RefusesAndTouchesNothing(
        "import dev " + Make({1}) + " --yes",
        "/dev is a device without raw contents; export and import take memory devices");
}

TEST_F(RawImport, RefusesWrongArguments) {
    RefusesAndTouchesNothing("import eeprom",
                             "import: too few arguments\nusage: import NODE FILE [OFFSET] [--yes]");
    RefusesAndTouchesNothing("import eeprom --yes", "import: too few arguments; try help import");
    RefusesAndTouchesNothing("import eeprom a 0 1", "import: too many arguments; try help import");
    RefusesAndTouchesNothing("import eeprom a --force",
                             "import: there is no option --force, only --yes");
}

TEST_F(RawImport, RefusesToWriteUnaskedWhenNobodyIsThere) {
    RefusesAndTouchesNothing("import eeprom " + Make({0xFF}),
                             "import: nobody is there to be asked, standard input is no terminal; "
                             "--yes writes without asking");
}

TEST_F(RawImport, AsksBeforeItWrites) {
    const CTypedInput terminal("y\n");
    EXPECT_EQ(Run("import eeprom " + Make({0x00, 0xFF})), EXIT_PASSED);
    EXPECT_EQ(printed,
              "/eeprom differs in 1 range:\n"
              "  0x0..0x1: 1 of 2 bytes\n"
              "    old 0x0:  00 01\n"
              "    new 0x0:  00 ff\n"
              "write 2 bytes in 1 range to /eeprom? [y/N] \n"
              "wrote and verified 2 bytes in 1 range of /eeprom\n");
    EXPECT_EQ(m_eeprom->contents[1], 0xFF);
}

TEST_F(RawImport, WritesNothingWithoutAYes) {
    for (const char* typed : {"n\n", "\n", "\x04"}) {
        const CTypedInput terminal(typed);
        EXPECT_EQ(Run("import eeprom " + Make({0xFF})), EXIT_ABORTED);
        EXPECT_THAT(printed, testing::EndsWith("? [y/N] \nnothing was written\n"));
    }
    EXPECT_THAT(m_eeprom->writes, IsEmpty());
}

TEST_F(RawImport, DoesNotAskWhenNothingDiffers) {
    const CTypedInput terminal;
    EXPECT_EQ(Run("import eeprom " + Make({0x00})), EXIT_PASSED);
    EXPECT_THAT(printed, StartsWith("nothing to change"));
}

TEST_F(RawImport, CtrlCAtTheQuestionWritesNothing) {
    const CTypedInput terminal("y\n");
    m_eeprom->before_read = CtrlCAt(0);
    EXPECT_EQ(Run("import eeprom " + Make({0xFF})), EXIT_ABORTED);
    EXPECT_THAT(printed, HasSubstr("? [y/N] \n"));
    EXPECT_EQ(errors, "/eeprom: import aborted, nothing was written\n");
    EXPECT_THAT(m_eeprom->writes, IsEmpty());
}

TEST_F(RawImport, HoldsTheDeviceFromTheFirstReadToTheLast) {
    unsigned int held = 0;
    m_eeprom->before_read = m_eeprom->before_write = [&](uint32_t) {
        held += WouldWait(*m_eeprom, DEV_LOCK_PROTECT) ? 1 : 0;
    };
    EXPECT_EQ(Import({0xFF}), EXIT_PASSED);
    EXPECT_EQ(held, 3U);
    EXPECT_FALSE(WouldWait(*m_eeprom, DEV_LOCK_ACCESS));
}

TEST_F(RawImport, CtrlCEndsTheWaitingForTheDevice) {
    const CLockHolder holder({{m_eeprom, DEV_LOCK_PROTECT}});
    std::raise(SIGINT);
    EXPECT_EQ(Import({0xFF}), EXIT_ABORTED);
    EXPECT_EQ(errors, "/eeprom: import aborted, nothing was written\n");
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
}

TEST_F(RawImport, WritesNothingWhenThePresentContentsCannotBeRead) {
    m_eeprom->before_read = FailAt(0);
    EXPECT_EQ(Import({0xFF}), EXIT_FAILED);
    EXPECT_EQ(errors, "/eeprom: import failed, nothing was written: no acknowledge from 0x50\n");
    EXPECT_THAT(m_eeprom->writes, IsEmpty());
}

TEST_F(RawImport, CtrlCWhileThePresentContentsAreReadWritesNothing) {
    m_eeprom->contents.resize(600);
    m_eeprom->before_read = CtrlCAt(256);
    EXPECT_EQ(Import(CBytes(600, 0xFF)), EXIT_ABORTED);
    EXPECT_EQ(errors, "/eeprom: import aborted, nothing was written\n");
    EXPECT_EQ(m_eeprom->reads.size(), 2U);
    EXPECT_THAT(m_eeprom->writes, IsEmpty());
}

TEST_F(RawImport, ShowsOnlyTheFirstOfManyDifferences) {
    EXPECT_EQ(Import(CBytes(256, 0xAB)), EXIT_PASSED);
    EXPECT_THAT(printed, HasSubstr("/eeprom differs in 16 ranges:\n"));
    EXPECT_THAT(printed, HasSubstr("\n  ... 12 more ranges: 0x40..0xff\n"));
}

TEST_F(RawImport, HasHelp) {
    EXPECT_EQ(Run("help import"), EXIT_PASSED);
    EXPECT_THAT(printed, StartsWith("usage: import NODE FILE [OFFSET] [--yes]\n"));
}

}  // namespace
