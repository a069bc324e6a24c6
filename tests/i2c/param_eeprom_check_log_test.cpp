// Everything that checking says and reads, line by line.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_check_test.h"

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

class ParamEepromCheckLog : public CParamCheckTest {
  protected:
    // The story without the dump of the image.
    std::vector<CStory::Entry> StoryWithoutDump() const {
        std::vector<CStory::Entry> entries;
        for (const CStory::Entry& entry : Story()) {
            if (entry.first != LW_SW_DUMP && !IsDumpedByte(entry)) {
                entries.push_back(entry);
            }
        }
        return entries;
    }
    static bool IsDumpedByte(const CStory::Entry& entry) {
        return entry.first == 0xA1 && entry.second.starts_with("0x");
    }
    // The lines of the dump, without their addresses.
    Texts Dump() const {
        Texts lines;
        for (const CStory::Entry& entry : Story()) {
            if (entry.first == LW_SW_DUMP || IsDumpedByte(entry)) {
                lines.push_back(entry.second.substr(entry.second.find(": ")));
            }
        }
        return lines;
    }
    // The dump of those bytes.
    static Texts DumpOf(const Bytes& bytes) {
        Texts lines;
        size_t i = 0;
        for (; i + 16 <= bytes.size(); i += 16) {
            std::string line = ":";
            for (size_t k = 0; k < 16; ++k) {
                line += (k == 8 ? "  " : " ") + Formatted("0x%02x", bytes[i + k]);
            }
            lines.push_back(line + " \n");
        }
        for (; i < bytes.size(); ++i) {
            lines.push_back(": " + Formatted("0x%02x", bytes[i]) + "\n");
        }
        return lines;
    }
};

TEST_F(ParamEepromCheckLog, TellsEveryStepOfACompactTable) {
    MountParam();
    const CTable table = CompactTable();
    const Bytes image = ImageOf(table);
    const uint32_t crc = WordAt(image, 0);
    Store(image);
    const std::string file = File(table);
    EXPECT_EQ(Check(file).Code(), SUCCESS);
    const CStory story = CStory()
                             .Says("Starting Parameter EEPROM Check...\n")
                             .Loads(table, file)
                             .Says("Checking DimmVersionNum... \n")
                             .Reads({4})
                             .Says("Check Dimm Version 0x00000003\n")
                             .Says("Checking DimmTableLength... \n")
                             .Reads({8})
                             .Says("Dimm length : 0x00000084\n")
                             .Says("Getting Dimm length in header : DONE\n")
                             .Says("Checking Signature... \n")
                             .Reads({12})
                             .Says("Checking NumEntriesHeader... \n")
                             .Reads({16})
                             .Says("Number of entries : 0x00000002\n")
                             .Says("Getting number of entries in header : DONE\n")
                             .Prints("Supported DIMMs in XML file version 3:\n")
                             .Prints("  0: \"PN-EXAMPLE-01\"\n")
                             .Says("Check Manufacturer Id m_offset=20\n")
                             .Reads({20, 24, 28, 32, 36, 40, 44, 48, 52})
                             .Says("Check Revisions m_offset=56\n")
                             .Reads({56})
                             .Says("Check Num Registers m_offset=60\n")
                             .Reads({60})
                             .Says("Check Addr & Values m_offset=64\n")
                             .Says("Read Addr m_offset=64\n")
                             .Reads({64})
                             .Says("Store Addr m_offset=64\n")
                             .Says("Read Addr m_offset=72\n")
                             .Reads({72})
                             .Says("Store Addr m_offset=72\n")
                             .Says("Read Addr m_offset=68\n")
                             .Reads({68})
                             .Says("Store Addr m_offset=68\n")
                             .Says("Read Addr m_offset=76\n")
                             .Reads({76})
                             .Says("Store Addr m_offset=76\n")
                             .Prints("  1: \"MT36\"\n")
                             .Says("Check Manufacturer Id m_offset=80\n")
                             .Reads({80, 84, 88, 92, 96, 100, 104, 108, 112})
                             .Says("Check Revisions m_offset=116\n")
                             .Reads({116})
                             .Says("Check Num Registers m_offset=120\n")
                             .Reads({120})
                             .Says("Check Addr & Values m_offset=124\n")
                             .Says("Read Addr m_offset=124\n")
                             .Reads({124})
                             .Says("Store Addr m_offset=124\n")
                             .Says("Read Addr m_offset=128\n")
                             .Reads({128})
                             .Says("Store Addr m_offset=128\n")
                             .Says(Formatted("Calculated CRC : 0x%08x\n", crc))
                             .Reads({0})
                             .Prints("XML Version : 3\n")
                             .Prints(Formatted("CRC         : 0x%08X\n", crc))
                             .Prints("EEPROM Parameters Verification PASSED\n");
    EXPECT_EQ(StoryWithoutDump(), story.Entries());
}

TEST_F(ParamEepromCheckLog, TellsEveryStepOfAnExtendedTableOfWhichNothingMatches) {
    MountParam();
    Blank();
    CTable table = ExtendedTable();
    table.modules.resize(1);
    table.modules[0].regs.resize(1);
    ASSERT_EQ(ImageOf(table).size(), 64U);
    const std::string file = File(table);
    EXPECT_EQ(Check(file).Code(), FAIL);
    const uint32_t crc = BitwiseCrc(Bytes(60, 0xFF));
    const CStory story =
        CStory()
            .Says("Starting Parameter EEPROM Check...\n")
            .Loads(table, file)
            .Says("Checking DimmVersionNum... \n")
            .Reads({4})
            .Says("Check Dimm Version 0xffffffff\n")
            .Fails("Dimm Version does not match! expected: 0x00000003, read: 0xFFFFFFFF\n")
            .Says("Checking DimmTableLength... \n")
            .Reads({8})
            .Says("Dimm length : 0xFFFFFFFF\n")
            .Says("Getting Dimm length in header : DONE\n")
            .Says("Checking Signature... \n")
            .Reads({12})
            .Fails("Signature does not match! expected: 0x56454C44, read: 0xFFFFFFFF\n")
            .Says("Checking NumEntriesHeader... \n")
            .Reads({16})
            .Says("Number of entries : 0xFFFFFFFF\n")
            .Says("Getting number of entries in header : DONE\n")
            .Prints("Supported DIMMs in XML file version 3:\n")
            .Prints("  0: \"PN-EXAMPLE-01\"\n")
            .Says("Check Manufacturer Id m_offset=20\n")
            .Reads({20, 24})
            .Fails(
                "Dimm[0]:ManufacturerID does not match! expected: 0x5566778899AA1234 , "
                "read: 0xFFFFFFFFFFFFFFFF\n")
            .Reads({28})
            .Fails(
                "(0)Dimm[0]:Part Number does not match! expected: 0x504E2D45, "
                "read: 0xFFFFFFFF\n")
            .Reads({32})
            .Fails(
                "(1)Dimm[0]:Part Number does not match! expected: 0x58414D50, "
                "read: 0xFFFFFFFF\n")
            .Reads({36})
            .Fails(
                "(2)Dimm[0]:Part Number does not match! expected: 0x4C452D30, "
                "read: 0xFFFFFFFF\n")
            .Reads({40})
            .Fails(
                "(3)Dimm[0]:Part Number does not match! expected: 0x31202020, "
                "read: 0xFFFFFFFF\n")
            .Reads({44})
            .Fails(
                "(4)Dimm[0]:Part Number does not match! expected: 0x20202000, "
                "read: 0xFFFFFFFF\n")
            .Says("Check Revisions m_offset=48\n")
            .Reads({48})
            .Fails(
                "Dimm[0]:Revision Pattern does not match! expected: 0x010200FF, "
                "read: 0xFFFFFFFF\n")
            .Says("Check Num Registers m_offset=52\n")
            .Reads({52})
            .Fails(
                "Dimm[0]:Revision Pattern does not match! expected: 0x00000001, "
                "read: 0xFFFFFFFF\n")
            .Says("Check Addr & Values m_offset=56\n")
            .Says("Read Addr m_offset=56\n")
            .Reads({56})
            .Says("Store Addr m_offset=56\n")
            .Says(
                "Dimm[0]:Register Offset 0 does not match! expected: 0x00000010, "
                "read: 0xFFFFFFFF\n")
            .Says("Read Addr m_offset=60\n")
            .Reads({60})
            .Says("Store Addr m_offset=60\n")
            .Says(
                "Dimm[0]:Register Value 0 does not match! expected: 0x0000001F, "
                "read: 0xFFFFFFFF\n")
            .Says(Formatted("Calculated CRC : 0x%08x\n", crc))
            .Reads({0})
            .Fails(Formatted("CRC32 does not match! expected: 0x%08X, read: 0xFFFFFFFF\n", crc))
            .Prints("XML Version : 3\n")
            .Prints(Formatted("CRC         : 0x%08X\n", crc))
            .Prints("DimmVersionNum Match: FALSE\n")
            .Prints("DimmTableLen Match: FALSE\n")
            .Prints("Signature Match: FALSE\n")
            .Prints("NumEntries Match: FALSE\n")
            .Informs("Dimm[0]: ManufacturerID Match: FALSE\n")
            .Informs("Dimm[0]: DimmPartNum Match: FALSE\n")
            .Informs("Dimm[0]: DimmRevision Match: FALSE\n")
            .Informs("Dimm[0]: NumRegisters Match: FALSE\n")
            .Informs("Dimm[0]: DimmRegisterValues Match: FALSE\n")
            .Prints("EEPROM Parameters Verification FAILED!\n")
            .Prints("Parameter EEPROM Check ended with failures.\n");
    EXPECT_EQ(StoryWithoutDump(), story.Entries());
}

TEST_F(ParamEepromCheckLog, CountsModulesInTwoColumns) {
    MountParam();
    CTable table;
    for (int i = 0; i < 11; ++i) {
        table.modules.emplace_back().part = "P" + std::to_string(i);
    }
    Store(ImageOf(table));
    EXPECT_EQ(Check(table).Code(), SUCCESS);
    EXPECT_THAT(LinesWith("  9: "), ElementsAre("  9: \"P9\"\n"));
    EXPECT_THAT(LinesWith(" 10: "), ElementsAre(" 10: \"P10\"\n"));
}

TEST_F(ParamEepromCheckLog, DumpsWhatWasReadBehindTheChecksum) {
    MountParam();
    CTable table = CompactTable();
    table.modules[0].regs.emplace_back(1, 2);
    table.modules.resize(1);
    Bytes image = ImageOf(table);
    ASSERT_EQ(image.size(), 88U);
    image[4] ^= 0x80;
    Store(image);
    EXPECT_EQ(Check(table).Code(), FAIL);
    EXPECT_EQ(Dump(), DumpOf(Bytes(image.begin() + 4, image.end())));
    // Five lines of sixteen bytes, then four lines of one.
    EXPECT_EQ(m_log.Texts(0xA5).size(), 5U);
    for (const std::string& text : m_log.Texts(0xA5)) {
        EXPECT_THAT(text, MatchesRegex("0x[0-9a-f]+:( 0x[0-9a-f]{2}){8} ( 0x[0-9a-f]{2}){8} \n"));
    }
    EXPECT_EQ(Dump().size(), 9U);
}

TEST_F(ParamEepromCheckLog, DumpsBetweenTheChecksumAndItsLine) {
    MountParam();
    Store(ImageOf(CompactTable()));
    EXPECT_EQ(Check(CompactTable()).Code(), SUCCESS);
    const std::vector<CStory::Entry> story = Story();
    const auto first = std::find_if(story.begin(), story.end(), [](const CStory::Entry& entry) {
        return entry.first == LW_SW_DUMP;
    });
    ASSERT_NE(first, story.end());
    EXPECT_EQ(first[-1].second, "RD 0+4");
    EXPECT_EQ(first[8].second, "XML Version : 3\n");
}

TEST_F(ParamEepromCheckLog, ShowsTheModulesAndTheVerdictOutsideDebugLevels) {
    MountParam();
    Store(ImageOf(CompactTable()));
    EXPECT_EQ(Check(CompactTable()).Code(), SUCCESS);
    EXPECT_EQ(
        LogWithoutDebug(),
        (CLines{Print("Supported DIMMs in XML file version 3:\n"),
                Print("  0: \"PN-EXAMPLE-01\"\n"), Print("  1: \"MT36\"\n"),
                Print("XML Version : 3\n"),
                Print(Formatted("CRC         : 0x%08X\n", WordAt(ImageOf(CompactTable()), 0))),
                Print("EEPROM Parameters Verification PASSED\n")}));
}

}  // namespace
