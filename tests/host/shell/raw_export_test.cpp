#include <gmock/gmock.h>

#include <csignal>
#include <thread>

#include "framework/diag_exception.h"
#include "tests/host/shell/raw_device.h"
#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RawExport : public RawDeviceTest {};

TEST_F(RawExport, WritesTheContentsToAFile) {
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_PASSED);
    EXPECT_EQ(printed, "exported 256 bytes from /eeprom to " + File("data") + "\n");
    EXPECT_EQ(errors, "");
    EXPECT_EQ(BytesOf(File("data")), m_eeprom->contents);
    EXPECT_THAT(Files(), ElementsAre("data"));
}

TEST_F(RawExport, TakesAnArrayOfTheDeviceForTheDevice) {
    EXPECT_EQ(Run("export /eeprom/memory " + File("data")), EXIT_PASSED);
    EXPECT_EQ(printed, "exported 256 bytes from /eeprom to " + File("data") + "\n");
    EXPECT_EQ(BytesOf(File("data")), m_eeprom->contents);
}

TEST_F(RawExport, TakesAReadOnlyDevice) {
    m_eeprom->read_only = true;
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_PASSED);
}

TEST_F(RawExport, ReadsInPieces) {
    m_eeprom->contents.resize(600, 0xEE);
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_PASSED);
    using CAccess = CFakeRawDevice::CAccess;
    EXPECT_THAT(m_eeprom->reads, ElementsAre(CAccess(0, 256), CAccess(256, 256), CAccess(512, 88)));
    EXPECT_EQ(BytesOf(File("data")), m_eeprom->contents);
}

TEST_F(RawExport, RefusesNodesWithoutRawContents) {
    EXPECT_EQ(Run("export dev " + File("data")), EXIT_USAGE);
    EXPECT_EQ(errors,
              "/dev is a device without raw contents; export and import take memory devices\n");
    for (const char* node :
         {"/", "dev/memory", "dev/add", "eeprom/deeper", "eeprom/deeper/memory", "nope"}) {
        EXPECT_EQ(Run("export " + std::string(node) + " " + File("data")), EXIT_USAGE) << node;
    }
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(RawExport, ReplacesAFileOnlyByForce) {
    m_folder.Write("data", std::vector<uint8_t>{9});
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_USAGE);
    EXPECT_EQ(errors, File("data") + " exists; --force replaces it\n");
    EXPECT_EQ(BytesOf(File("data")), std::vector<uint8_t>{9});
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
    EXPECT_EQ(Run("export --force eeprom " + File("data")), EXIT_PASSED);
    EXPECT_EQ(BytesOf(File("data")), m_eeprom->contents);
    EXPECT_EQ(Run("export eeprom " + File("data") + " --force"), EXIT_PASSED);
    EXPECT_THAT(Files(), ElementsAre("data"));
}

TEST_F(RawExport, RefusesWrongArguments) {
    EXPECT_EQ(Run("export eeprom"), EXIT_USAGE);
    EXPECT_EQ(errors, "export: too few arguments\nusage: export NODE FILE [--force]\n");
    EXPECT_EQ(Run("export eeprom --force"), EXIT_USAGE);
    EXPECT_EQ(errors, "export: too few arguments; try help export\n");
    EXPECT_EQ(Run("export eeprom a b"), EXIT_USAGE);
    EXPECT_EQ(errors, "export: too many arguments; try help export\n");
    EXPECT_EQ(Run("export eeprom " + File("data") + " --yes"), EXIT_USAGE);
    EXPECT_EQ(errors, "export: there is no option --yes, only --force\n");
    EXPECT_EQ(Run("export eeprom ''"), EXIT_USAGE);
    EXPECT_EQ(errors, "\"\" cannot name a file\n");
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(RawExport, RefusesAPlaceWhereNoFileCanBeMadeBeforeItReads) {
    EXPECT_EQ(Run("export eeprom " + File("missing/data")), EXIT_USAGE);
    EXPECT_THAT(errors, testing::HasSubstr("No such file or directory"));
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
}

TEST_F(RawExport, LeavesNoFileWhenTheDeviceFails) {
    m_eeprom->contents.resize(600);
    m_eeprom->before_read = [](uint32_t offset) {
        if (offset == 256) {
            throw CDiagException("bus stuck low");
        }
    };
    EXPECT_EQ(Run("export eeprom " + File("data"), "script:3"), EXIT_FAILED);
    EXPECT_EQ(errors, "script:3: /eeprom: export failed, no file was written: bus stuck low\n");
    EXPECT_EQ(printed, "");
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(RawExport, CtrlCEndsItBetweenTwoPieces) {
    m_eeprom->contents.resize(600);
    m_eeprom->before_read = [](uint32_t offset) {
        if (offset == 256) {
            std::raise(SIGINT);
        }
    };
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_ABORTED);
    EXPECT_EQ(errors, "/eeprom: export aborted, no file was written\n");
    EXPECT_EQ(m_eeprom->reads.size(), 2U);
    EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(RawExport, HoldsTheDeviceAsLongAsItReads) {
    m_eeprom->contents.resize(600);
    unsigned int held = 0;
    m_eeprom->before_read = [&](uint32_t) {
        held += WouldWait(*m_eeprom, DEV_LOCK_PROTECT) ? 1 : 0;
    };
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_PASSED);
    EXPECT_EQ(held, 3U);
    EXPECT_FALSE(WouldWait(*m_eeprom, DEV_LOCK_ACCESS));
}

TEST_F(RawExport, CtrlCEndsTheWaitingForTheDevice) {
    const CLockHolder holder({{m_eeprom, DEV_LOCK_PROTECT}});
    std::thread operator_hand([] { ::kill(::getpid(), SIGINT); });
    EXPECT_EQ(Run("export eeprom " + File("data")), EXIT_ABORTED);
    operator_hand.join();
    EXPECT_EQ(errors, "/eeprom: export aborted, no file was written\n");
    EXPECT_THAT(m_eeprom->reads, IsEmpty());
    EXPECT_THAT(Files(), IsEmpty());
}

}  // namespace
