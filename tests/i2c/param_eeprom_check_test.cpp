// "check-param-eeprom": what it reads, what it finds, and what it answers.
#include "tests/i2c/param_eeprom_check_test.h"

#include <gmock/gmock.h>

#include "tests/support/lock_probe.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const FAILED = "Parameter EEPROM Check ended with failures.\n";

class ParamEepromCheck : public CParamCheckTest {};

// What matches.

TEST_F(ParamEepromCheck, PassesWhatWasProgrammed) {
    MountParam();
    for (const CTable& table : {CompactTable(), ExtendedTable()}) {
        EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
        Forget();
        EXPECT_EQ(Check(table).bytes, CheckAnswer(SUCCESS, VERSION, WordAt(ImageOf(table), 0)));
        EXPECT_THAT(LoggedVerdict(), ElementsAre("EEPROM Parameters Verification PASSED\n"));
        EXPECT_THAT(Mismatches(), IsEmpty());
        EXPECT_THAT(LinesWith(FAILED), IsEmpty());
    }
}

TEST_F(ParamEepromCheck, ReadsEveryWordOnceInTheOrderOfProgramming) {
    MountParam();
    Store(m_image);
    EXPECT_EQ(Check(m_table).Code(), SUCCESS);
    EXPECT_EQ(Calls(), ReadCalls(WordOrderOf(m_table)));
}

TEST_F(ParamEepromCheck, ReadsAnExtendedTableInTheOrderOfProgramming) {
    MountParam();
    Store(ImageOf(ExtendedTable()));
    EXPECT_EQ(Check(ExtendedTable()).Code(), SUCCESS);
    EXPECT_EQ(Calls(), ReadCalls({4,  8,  12, 16, 20, 24, 28, 32, 36, 40,  44,  48,  52,  56, 64,
                                  60, 68, 72, 76, 80, 84, 88, 92, 96, 100, 104, 108, 112, 0}));
}

TEST_F(ParamEepromCheck, OpensAndClosesThePathForEveryWord) {
    MountParamBehindSwitch();
    Store(m_image);
    EXPECT_EQ(Check(m_table).Code(), SUCCESS);
    CCalls calls;
    for (const std::string& call : ReadCalls(WordOrderOf(m_table))) {
        calls.insert(calls.end(), {SELECT, call, CLOSE});
    }
    EXPECT_EQ(Calls(), calls);
}

TEST_F(ParamEepromCheck, ChangesNothing) {
    MountParam();
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    EXPECT_TRUE(m_bus.HoldsInitialBytes());
    EXPECT_EQ(m_clock.Sleeps(), 0U);
}

TEST_F(ParamEepromCheck, KeepsATestFromTakingTheDevice) {
    MountParam();
    bool waits = true;
    m_bus.OnTransfer(
        [&](size_t, const CI2cXfrReq&) { waits = waits && WouldWait(Device(), DEV_LOCK_ACCESS); });
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    EXPECT_TRUE(waits);
}

// What differs: every word of a compact image in turn.

struct CDifference {
    unsigned int at;
    const char* field;     // of the verdict; empty: the checksum alone
    const char* mismatch;  // with the words that are expected and read; empty: has no line
};
void PrintTo(const CDifference& difference, std::ostream* out) {
    *out << difference.at;
}

class ParamEepromCheckOfWord : public ParamEepromCheck,
                               public testing::WithParamInterface<CDifference> {};
INSTANTIATE_TEST_SUITE_P(
    , ParamEepromCheckOfWord,
    testing::Values(
        CDifference{0, "", ""},
        CDifference{4, "DimmVersionNum",
                    "Dimm Version does not match! expected: 0x00000003, read: 0x01000002\n"},
        CDifference{8, "DimmTableLen", ""},
        CDifference{12, "Signature",
                    "Signature does not match! expected: 0xA5A50001, read: 0xA4A50000\n"},
        CDifference{16, "NumEntries", ""},
        CDifference{20, "Dimm[0]: ManufacturerID",
                    "Dimm[0]:ManufacturerID does not match! expected: 0x0000000012340000 , "
                    "read: 0x0000000013340001\n"},
        CDifference{56, "Dimm[0]: DimmRevision",
                    "Dimm[0]:Revision Pattern does not match! expected: 0x010200FF, "
                    "read: 0x000200FE\n"},
        CDifference{60, "Dimm[0]: NumRegisters",
                    "Dimm[0]:Revision Pattern does not match! expected: 0x00000002, "
                    "read: 0x01000003\n"},
        CDifference{64, "Dimm[0]: DimmRegisterValues",
                    "Dimm[0]:Register Offset 0 does not match! expected: 0x00000010, "
                    "read: 0x01000011\n"},
        CDifference{68, "Dimm[0]: DimmRegisterValues",
                    "Dimm[0]:Register Value 0 does not match! expected: 0x0000001F, "
                    "read: 0x0100001E\n"},
        CDifference{72, "Dimm[0]: DimmRegisterValues",
                    "Dimm[0]:Register Offset 1 does not match! expected: 0x00000014, "
                    "read: 0x01000015\n"},
        CDifference{76, "Dimm[0]: DimmRegisterValues",
                    "Dimm[0]:Register Value 1 does not match! expected: 0x00000200, "
                    "read: 0x01000201\n"},
        CDifference{80, "Dimm[1]: ManufacturerID",
                    "Dimm[1]:ManufacturerID does not match! expected: 0x0000000000CE0000 , "
                    "read: 0x0000000001CE0001\n"},
        CDifference{116, "Dimm[1]: DimmRevision",
                    "Dimm[1]:Revision Pattern does not match! expected: 0x0000FFFF, "
                    "read: 0x0100FFFE\n"},
        CDifference{120, "Dimm[1]: NumRegisters",
                    "Dimm[1]:Revision Pattern does not match! expected: 0x00000001, "
                    "read: 0x01000000\n"},
        CDifference{124, "Dimm[1]: DimmRegisterValues",
                    "Dimm[1]:Register Offset 0 does not match! expected: 0x00000018, "
                    "read: 0x01000019\n"},
        CDifference{128, "Dimm[1]: DimmRegisterValues",
                    "Dimm[1]:Register Value 0 does not match! expected: 0x00000007, "
                    "read: 0x01000006\n"}),
    [](const auto& difference) { return "At" + std::to_string(difference.param.at); });

TEST_P(ParamEepromCheckOfWord, NamesTheFieldThatDiffers) {
    MountParam();
    Store(m_image);
    StoreWord(GetParam().at, WordAt(m_image, GetParam().at) ^ 0x01000001);
    const uint32_t computed = StoredCrc(m_image.size());
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, computed));
    const std::string mismatch = GetParam().mismatch;
    Texts mismatches;
    if (!mismatch.empty()) {
        mismatches.push_back(mismatch);
    }
    mismatches.push_back(Formatted("CRC32 does not match! expected: 0x%08X, ", computed) +
                         Formatted("read: 0x%08X\n", WordAt(Memory(0, 4), 0)));
    EXPECT_EQ(Mismatches(), mismatches);
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {GetParam().field}));
    EXPECT_THAT(LinesWith(FAILED), ElementsAre(FAILED));
    EXPECT_EQ(LogWithoutDebug().back(), Print(FAILED));
    EXPECT_EQ(Calls(), ReadCalls(WordOrderOf(m_table)));
}

class ParamEepromCheckOfPartNumber : public ParamEepromCheck,
                                     public testing::WithParamInterface<unsigned int> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromCheckOfPartNumber, testing::Range(0U, 8U));

TEST_P(ParamEepromCheckOfPartNumber, NamesTheWordThatDiffers) {
    MountParam();
    for (const unsigned int module : {0U, 1U}) {
        Forget();
        Store(m_image);
        const unsigned int at = (module == 0 ? 24 : 84) + 4 * GetParam();
        const uint32_t word = WordAt(m_image, at);
        StoreWord(at, word ^ 0x80);
        EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, StoredCrc(m_image.size())));
        ASSERT_EQ(Mismatches().size(), 2U);
        EXPECT_EQ(Mismatches()[0],
                  "(" + std::to_string(GetParam()) + ")Dimm[" + std::to_string(module) +
                      Formatted("]:Part Number does not match! expected: 0x%08X, ", word) +
                      Formatted("read: 0x%08X\n", word ^ 0x80));
        EXPECT_EQ(LoggedVerdict(),
                  Verdict(2, {"Dimm[" + std::to_string(module) + "]: DimmPartNum"}));
    }
}

class ParamEepromCheckOfExtended : public CParamCheckTest,
                                   public testing::WithParamInterface<CDifference> {};
INSTANTIATE_TEST_SUITE_P(
    , ParamEepromCheckOfExtended,
    testing::Values(
        CDifference{20, "Dimm[0]: ManufacturerID",
                    "Dimm[0]:ManufacturerID does not match! expected: 0x5566778899AA1234 , "
                    "read: 0x5466778999AA1234\n"},
        CDifference{24, "Dimm[0]: ManufacturerID",
                    "Dimm[0]:ManufacturerID does not match! expected: 0x5566778899AA1234 , "
                    "read: 0x5566778898AA1235\n"},
        CDifference{28, "Dimm[0]: DimmPartNum",
                    "(0)Dimm[0]:Part Number does not match! expected: 0x504E2D45, "
                    "read: 0x514E2D44\n"},
        CDifference{44, "Dimm[0]: DimmPartNum",
                    "(4)Dimm[0]:Part Number does not match! expected: 0x20202000, "
                    "read: 0x21202001\n"},
        CDifference{48, "Dimm[0]: DimmRevision",
                    "Dimm[0]:Revision Pattern does not match! expected: 0x010200FF, "
                    "read: 0x000200FE\n"},
        CDifference{52, "Dimm[0]: NumRegisters",
                    "Dimm[0]:Revision Pattern does not match! expected: 0x00000002, "
                    "read: 0x01000003\n"},
        CDifference{68, "Dimm[0]: DimmRegisterValues",
                    "Dimm[0]:Register Value 1 does not match! expected: 0x00000200, "
                    "read: 0x01000201\n"},
        CDifference{76, "Dimm[1]: ManufacturerID",
                    "Dimm[1]:ManufacturerID does not match! expected: 0x00000000000000CE , "
                    "read: 0x00000000010000CF\n"}),
    [](const auto& difference) { return "At" + std::to_string(difference.param.at); });

TEST_P(ParamEepromCheckOfExtended, NamesTheFieldThatDiffers) {
    MountParam();
    const Bytes image = ImageOf(ExtendedTable());
    Store(image);
    StoreWord(GetParam().at, WordAt(image, GetParam().at) ^ 0x01000001);
    EXPECT_EQ(Check(ExtendedTable()).bytes, CheckAnswer(FAIL, VERSION, StoredCrc(image.size())));
    ASSERT_EQ(Mismatches().size(), 2U);
    EXPECT_EQ(Mismatches()[0], GetParam().mismatch);
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {GetParam().field}));
}

TEST_F(ParamEepromCheck, GoesOnThroughEverythingThatDiffers) {
    MountParam();
    Blank();
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, StoredCrc(m_image.size())));
    EXPECT_EQ(Calls(), ReadCalls(WordOrderOf(m_table)));
    Texts verdict = Verdict(2, {});
    for (std::string& line : verdict) {
        const size_t at = line.find("TRUE");
        if (at != std::string::npos) {
            line.replace(at, 4, "FALSE");
        }
    }
    EXPECT_EQ(LoggedVerdict(), verdict);
}

TEST_F(ParamEepromCheck, FailsOnTheChecksumAloneWhichHasNoLineOfItsOwn) {
    MountParam();
    Store(m_image);
    StoreWord(0, 0xFFFFFFFF);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(FAIL, VERSION, m_crc));
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {}));
}

TEST_F(ParamEepromCheck, MatchesRegistersOfAModuleWithoutAny) {
    MountParam();
    CTable table = m_table;
    table.modules[1].regs.clear();
    Store(ImageOf(table));
    StoreWord(4, 9);
    EXPECT_EQ(Check(table).Code(), FAIL);
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {"DimmVersionNum"}));
}

TEST_F(ParamEepromCheck, FindsTheOneValueThatTheFileHasChanged) {
    MountParam();
    EXPECT_EQ(Program(m_table).bytes, Bytes{SUCCESS});
    CTable table = m_table;
    table.modules[1].regs[0].second = 8;
    EXPECT_EQ(Check(table).bytes, CheckAnswer(FAIL, VERSION, m_crc));
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {"Dimm[1]: DimmRegisterValues"}));
    // The checksum is that of the words that were read, so it agrees.
    EXPECT_THAT(Mismatches(), ElementsAre("Dimm[1]:Register Value 0 does not match! expected: "
                                          "0x00000008, read: 0x00000007\n"));
}

TEST_F(ParamEepromCheck, AnswersTheVersionOfTheFile) {
    MountParam();
    Store(m_image);
    CTable table = m_table;
    table.version = 0x89ABCDEF;
    EXPECT_EQ(Check(table).bytes, CheckAnswer(FAIL, 0x89ABCDEF, m_crc));
}

TEST_F(ParamEepromCheck, IgnoresWhatLiesBehindTheImage) {
    MountParam();
    Store(m_image);
    StoreWord(m_image.size(), 0x12345678);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(SUCCESS, VERSION, m_crc));
}

TEST_F(ParamEepromCheck, DoesNotRememberTheRunBefore) {
    MountParam();
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    Store(m_image);
    EXPECT_EQ(Check(m_table).bytes, CheckAnswer(SUCCESS, VERSION, m_crc));
    StoreWord(12, 0);
    Forget();
    EXPECT_EQ(Check(m_table).Code(), FAIL);
    EXPECT_EQ(LoggedVerdict(), Verdict(2, {"Signature"}));
}

}  // namespace
