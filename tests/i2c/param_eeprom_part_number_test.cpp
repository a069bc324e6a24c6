// Part numbers of every length, and characters that do not belong there.
#include <gmock/gmock.h>

#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string LONG_PART = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-+./";

struct CPart {
    size_t length;
    const char* compact;   // the 32 bytes of the field
    const char* extended;  // its 19 bytes
};
class ParamEepromPartNumber : public CParamEepromTest, public testing::WithParamInterface<CPart> {
  protected:
    ParamEepromPartNumber() { MountParam(); }

    std::string Field(size_t addr, size_t size) {
        const Bytes bytes = Memory(addr, size);
        return {bytes.begin(), bytes.end()};
    }
    static Texts WarningsOf(const std::string& part, size_t room) {
        if (part.size() <= room) {
            return {};
        }
        return {"Dimm[0] \"" + part + "\": of the part number only " + std::to_string(room) +
                " characters are stored\n"};
    }
};
INSTANTIATE_TEST_SUITE_P(
    , ParamEepromPartNumber,
    testing::Values(CPart{1, "A                               ", "A                  "},
                    CPart{3, "ABC                             ", "ABC                "},
                    CPart{4, "ABCD                            ", "ABCD               "},
                    CPart{18, "ABCDEFGHIJKLMNOPQR              ", "ABCDEFGHIJKLMNOPQR "},
                    CPart{19, "ABCDEFGHIJKLMNOPQRS             ", "ABCDEFGHIJKLMNOPQRS"},
                    CPart{20, "ABCDEFGHIJKLMNOPQRST            ", "ABCDEFGHIJKLMNOPQRS"},
                    CPart{31, "ABCDEFGHIJKLMNOPQRSTUVWXYZ01234 ", "ABCDEFGHIJKLMNOPQRS"},
                    CPart{32, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "ABCDEFGHIJKLMNOPQRS"},
                    CPart{33, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "ABCDEFGHIJKLMNOPQRS"},
                    CPart{40, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", "ABCDEFGHIJKLMNOPQRS"}),
    [](const auto& part) { return std::to_string(part.param.length) + "Characters"; });

TEST_P(ParamEepromPartNumber, FillsThirtyTwoBytesWhenCompact) {
    const std::string part = LONG_PART.substr(0, GetParam().length);
    const CTable table = {.modules = {{.part = part, .regs = {{1, 2}}}}};
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Field(24, 32), GetParam().compact);
    EXPECT_EQ(Memory(0, 72), ImageOf(table));
    EXPECT_THAT(LinesWith("Part Number size : "), ElementsAre("Part Number size : 32\n"));
    EXPECT_THAT(LinesWith("Dimm part number : "), ElementsAre("Dimm part number : " + part + "\n"));
    EXPECT_EQ(m_log.Texts(0x40), WarningsOf(part, 32));
    EXPECT_EQ(Check(table).bytes, CheckAnswer(SUCCESS, 3, WordAt(ImageOf(table), 0)));
}

TEST_P(ParamEepromPartNumber, FillsNineteenBytesAndAnEndWhenExtended) {
    const std::string part = LONG_PART.substr(0, GetParam().length);
    const CTable table = {.signature = CTable::EXTENDED,
                          .modules = {{.part = part, .regs = {{1, 2}}}}};
    EXPECT_EQ(Program(table).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Field(28, 20), GetParam().extended + std::string(1, '\0'));
    EXPECT_EQ(Memory(0, 64), ImageOf(table));
    EXPECT_THAT(LinesWith("Part Number size : "), ElementsAre("Part Number size : 19\n"));
    EXPECT_THAT(LinesWith("Dimm part number : "), ElementsAre("Dimm part number : " + part + "\n"));
    EXPECT_EQ(m_log.Texts(0x40), WarningsOf(part, 19));
    EXPECT_EQ(Check(table).bytes, CheckAnswer(SUCCESS, 3, WordAt(ImageOf(table), 0)));
}

class ParamEepromNoPartNumber : public CParamEepromTest,
                                public testing::WithParamInterface<uint32_t> {};
INSTANTIATE_TEST_SUITE_P(, ParamEepromNoPartNumber,
                         testing::Values(CTable::COMPACT, CTable::EXTENDED),
                         [](const auto& signature) {
                             return signature.param == CTable::EXTENDED ? "Extended" : "Compact";
                         });

TEST_P(ParamEepromNoPartNumber, IsAllBlanks) {
    MountParam();
    CTable table = {.signature = GetParam(), .modules = {{}, {.part = ""}}};
    std::string xml = XmlOf(table);
    const std::string second = "<dimm_part_num></dimm_part_num>";
    xml.erase(xml.find(second), second.size());
    const std::string file = File(xml);
    EXPECT_EQ(Program(file).bytes, Bytes{SUCCESS});
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
    EXPECT_THAT(LinesWith("Dimm part number : "),
                ElementsAre("Dimm part number : PN-EXAMPLE-01\n", "Dimm part number : \n"));
    EXPECT_EQ(Check(file).bytes, CheckAnswer(SUCCESS, 3, WordAt(ImageOf(table), 0)));
    EXPECT_THAT(LinesWith("  1: "), ElementsAre("  1: \"\"\n"));
}

// Characters.

class ParamEepromCharacters : public CParamEepromTest {
  protected:
    ParamEepromCharacters() { MountParam(); }

    // Programs a module of that part number and checks it.
    void ExpectStored(const CTable& table) {
        const std::string file = File(table);
        EXPECT_EQ(Program(file).bytes, Bytes{SUCCESS});
        EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
        const Texts warnings = m_log.Texts(0x40);
        EXPECT_EQ(Check(file).bytes, CheckAnswer(SUCCESS, 3, WordAt(ImageOf(table), 0)));
        m_warnings = warnings;
    }
    Texts m_warnings;  // of programming
};

TEST_F(ParamEepromCharacters, AreReportedWhenTheyAreATabAndStoredAsTheyAre) {
    ExpectStored({.modules = {{.part = "AB\tCD"}}});
    EXPECT_THAT(m_warnings, ElementsAre("Illegal ASCII offset 2=0x9\n"));
}

TEST_F(ParamEepromCharacters, AreLegalFromTheBlankToTheTilde) {
    ExpectStored({.modules = {{.part = " !#$()*~"}, {.part = "}~}~ /:;=?@[]^_`{|"}}});
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(ParamEepromCharacters, AreIllegalFromDeleteOn) {
    ExpectStored({.modules = {{.part = "A\x7F"
                                       "B\xC3\xA9"}}});
    EXPECT_THAT(m_warnings,
                ElementsAre("Illegal ASCII offset 1=0x7f\n", "Illegal ASCII offset 3=0xc3\n",
                            "Illegal ASCII offset 4=0xa9\n"));
}

TEST_F(ParamEepromCharacters, AreNotReportedBehindTheField) {
    ExpectStored({.modules = {{.part = LONG_PART.substr(0, 31) + "\t\t"}}});
    EXPECT_THAT(m_warnings, ElementsAre(HasSubstr("only 32 characters are stored"),
                                        "Illegal ASCII offset 31=0x9\n"));
    m_log.Clear();
    ExpectStored(
        {.signature = CTable::EXTENDED, .modules = {{.part = LONG_PART.substr(0, 18) + "\t\t"}}});
    EXPECT_THAT(m_warnings, ElementsAre(HasSubstr("only 19 characters are stored"),
                                        "Illegal ASCII offset 18=0x9\n"));
}

TEST_F(ParamEepromCharacters, AreReportedForEveryModule) {
    ExpectStored({.modules = {{.part = "A\t"}, {.part = "B"}, {.part = "CC\t"}}});
    EXPECT_THAT(m_warnings,
                ElementsAre("Illegal ASCII offset 1=0x9\n", "Illegal ASCII offset 2=0x9\n"));
}

TEST_F(ParamEepromCharacters, AreReportedJustBeforeTheirWordIsWritten) {
    EXPECT_EQ(Program(CTable{.modules = {{.part = "ABCDE\tFG"}}}).bytes, Bytes{SUCCESS});
    const std::vector<CStory::Entry> story = Story();
    const auto warning =
        std::find(story.begin(), story.end(), CStory::Entry{0x40, "Illegal ASCII offset 5=0x9\n"});
    ASSERT_NE(warning, story.end());
    EXPECT_EQ(warning[-1].second, "RD 24+4");
    EXPECT_EQ(warning[1].second, "WR 28+4");
}

}  // namespace
