// Which table the commands take, and what is said where there is none: the same
// for programming and for checking, and always before the EEPROM is touched.
#include <gmock/gmock.h>

#include <filesystem>

#include "i2c/param_eeprom_cmd.h"
#include "tests/i2c/param_eeprom_test.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ParamEepromInit : public CParamEepromTest, public testing::WithParamInterface<const char*> {
  protected:
    ParamEepromInit() { MountParamBehindSwitch(); }

    // The command under test.
    CDiagMenu& Subject() { return Command(GetParam()); }
    CAnswer Run(const std::string& file) { return Send(Subject(), MSG_CALL, file); }
    bool Programs() const { return GetParam() == std::string("prog-param-eeprom"); }

    // The command failed in init, with these errors and before any access.
    void ExpectRefusal(const std::string& file, const Texts& errors) {
        EXPECT_EQ(Run(file).bytes, Bytes{FAIL});
        EXPECT_EQ(m_log.Texts(0x10), errors);
        EXPECT_THAT(Calls(), IsEmpty());
        EXPECT_TRUE(m_bus.HoldsInitialBytes());
    }
    static Texts EndedBy(Texts errors, const std::string& text) {
        errors.push_back("init function failed: init " + text);
        errors.push_back("CMB command failed: Invoke " + text);
        return errors;
    }
};
INSTANTIATE_TEST_SUITE_P(, ParamEepromInit,
                         testing::Values("prog-param-eeprom", "check-param-eeprom"),
                         [](const auto& command) {
                             return std::string(command.param).starts_with("prog") ? "Program"
                                                                                   : "Check";
                         });

// The table that is taken.

TEST_P(ParamEepromInit, TakesTheNamedFile) {
    const std::string file = File(CompactTable());
    Store(ImageOf(CompactTable()));
    EXPECT_EQ(Run(file).Code(), SUCCESS);
    const std::string action = Programs() ? "Program" : "Check";
    CStory story;
    story.Says("Starting Parameter EEPROM " + action + "...\n").Loads(CompactTable(), file);
    std::vector<CStory::Entry> begin = Story();
    begin.resize(story.Entries().size());
    EXPECT_EQ(begin, story.Entries());
}

TEST_P(ParamEepromInit, LooksForTheDefaultFileWithoutAName) {
    if (std::filesystem::exists(CParamEepromCmd::DEFAULT_FILE)) {
        GTEST_SKIP() << "the default table is installed on this machine";
    }
    EXPECT_STREQ(CParamEepromCmd::DEFAULT_FILE,
                 "/usr/lib/morva/diags/bin/xml/prog_param_quillbank.xml");
    const std::string text =
        "Error: Xml Parsing failed. Xml file "
        "\"/usr/lib/morva/diags/bin/xml/prog_param_quillbank.xml\" can not be found.\n"
        "Exception caught in : getDimmTableFrom";
    EXPECT_EQ(Send(Subject(), MSG_CALL).bytes, Bytes{FAIL});
    EXPECT_THAT(m_log.Texts(0x10), Contains(text));
    EXPECT_THAT(LinesWith("XML file is : "), IsEmpty());
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_P(ParamEepromInit, TakesAnEmptyNameForNone) {
    const CAnswer without = Send(Subject(), MSG_CALL);
    const CLines lines = m_log.Lines();
    Forget();
    const CAnswer empty = Run("");
    EXPECT_EQ(empty.bytes, without.bytes);
    EXPECT_EQ(m_log.Lines(), lines);
    EXPECT_THAT(LinesWith("XML file is : "), IsEmpty());
}

TEST_P(ParamEepromInit, ForgetsTheNameOfTheRunBefore) {
    const std::string file = File(CompactTable());
    Run(file);
    Forget();
    Send(Subject(), MSG_CALL);
    EXPECT_THAT(LinesWith("XML file is : "), IsEmpty());
    EXPECT_THAT(LinesWith("Starting "), testing::Not(IsEmpty()));
}

TEST_P(ParamEepromInit, ReadsTheFileAnewEveryTime) {
    Store(ImageOf(CompactTable()));
    EXPECT_EQ(Run(File(CompactTable())).Code(), SUCCESS);
    Forget();
    CTable other = CompactTable();
    other.version = 0x55;
    other.modules.pop_back();
    const std::string file = File(other);
    Run(file);
    EXPECT_THAT(LinesWith("Num of entries = "), ElementsAre("Num of entries = 1\n"));
    EXPECT_THAT(LinesWith("size of dimmtable = "), ElementsAre("size of dimmtable = 80\n"));
}

// The request.

TEST_P(ParamEepromInit, RefusesARequestThatIsCutOff) {
    for (const Bytes& bytes : {Bytes{0}, Bytes{0, 4}, Bytes{0, 4, 'a', 'b', 'c'}}) {
        Forget();
        EXPECT_EQ(Send(Subject(), MSG_CALL, CNumbers{bytes}).bytes, Bytes{FAIL});
        const std::string text = UnderflowText<std::string>(bytes);
        EXPECT_THAT(m_log.Texts(0x10),
                    ElementsAre("Params exception: " + text, "CMB command failed: Invoke " + text));
        EXPECT_THAT(Calls(), IsEmpty());
    }
}

// Files that are none.

TEST_P(ParamEepromInit, TellsOfAFileThatIsNotThere) {
    const std::string file = (m_folder / "none.xml").string();
    EXPECT_EQ(Run(file).bytes, Bytes{FAIL});
    const Texts errors = m_log.Texts(0x10);
    ASSERT_EQ(errors.size(), 5U);
    EXPECT_EQ(errors[0], "HEREEE_ERRORR!!\n");
    EXPECT_EQ(errors[1], "Error: Xml Parsing failed. Xml file \"" + file +
                             "\" can not be found.\nException caught in : getDimmTableFrom");
    EXPECT_THAT(errors[2], HasSubstr("none.xml"));
    EXPECT_EQ(errors[3], "init function failed: init NO_XML_FILE_FOUND");
    EXPECT_EQ(errors[4], "CMB command failed: Invoke NO_XML_FILE_FOUND");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_P(ParamEepromInit, TellsWhereAFileIsNoXml) {
    const std::string file = File("<t>\n<dimm_table_version>1</dimm_version>\n</t>\n");
    EXPECT_EQ(Run(file).bytes, Bytes{FAIL});
    const Texts errors = m_log.Texts(0x10);
    ASSERT_EQ(errors.size(), 5U);
    EXPECT_EQ(errors[0], "HEREEE_ERRORR!!\n");
    EXPECT_EQ(errors[1], "Error: Xml Parsing failed. Xml file \"" + file +
                             "\" can not be found.\nException caught in : getDimmTableFrom");
    EXPECT_THAT(errors[2], HasSubstr("table.xml"));
    EXPECT_THAT(errors[2], HasSubstr("2"));
    EXPECT_EQ(errors[3], "init function failed: init NO_XML_FILE_FOUND");
    EXPECT_EQ(errors[4], "CMB command failed: Invoke NO_XML_FILE_FOUND");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_P(ParamEepromInit, TellsOfAnEmptyFileAndOfAFolder) {
    for (const std::string& file : {File(""), m_folder.Path().string()}) {
        Forget();
        EXPECT_EQ(Run(file).bytes, Bytes{FAIL});
        EXPECT_THAT(m_log.Texts(0x10), Contains("CMB command failed: Invoke NO_XML_FILE_FOUND"));
        EXPECT_THAT(Calls(), IsEmpty());
    }
}

// Files that are no table.

TEST_P(ParamEepromInit, NamesTheElementThatIsMissing) {
    const std::string whole = XmlOf(CompactTable());
    for (const char* name : {"dimm_table_version", "jedec_manufacturer_id", "signature",
                             "dimm_part_num", "revision_start", "revision_end"}) {
        SCOPED_TRACE(name);
        std::string xml = whole;
        for (const std::string& bracket : {std::string("<"), std::string("</")}) {
            for (size_t at = 0; (at = xml.find(bracket + name, at)) != std::string::npos;) {
                xml.replace(at, bracket.size() + std::string(name).size(), bracket + "other");
            }
        }
        Forget();
        const std::string file = File(xml);
        ExpectRefusal(file, EndedBy({std::string("error : \"") + name + "\"\n", "HEREEE_ERRORR!!\n",
                                     "Error: Xml Parsing failed. XML file \"" + file +
                                         "\" format is incorrect. Missing tag(s)\n"},
                                    "XML_MISSING_TAGS"));
    }
}

TEST_P(ParamEepromInit, RefusesAnElementWithoutTextAtTheEnd) {
    const std::string file = File(
        "<t><dimm_table_version>1</dimm_table_version><signature>2</signature>"
        "<jedec_manufacturer_id>3</jedec_manufacturer_id><dimm_part_num>A</dimm_part_num>"
        "<revision_start>0</revision_start><revision_end/></t>");
    ExpectRefusal(file,
                  EndedBy({"error : \"revision_end\" is the last item and has no text\n",
                           "Error in Parsing. Check Xml file.\n", "HEREEE_ERRORR!!\n",
                           "Error: Xml Parsing failed. XML file \"" + file +
                               "\" format is incorrect.Exception caught in : getDimmTableFrom"},
                          "XML_FORMAT_ERROR"));
}

TEST_P(ParamEepromInit, DoesNotMindATableWithoutRegisters) {
    const std::string file = File(
        "<t><dimm_table_version>1</dimm_table_version><signature>2</signature>"
        "<jedec_manufacturer_id>3</jedec_manufacturer_id><dimm_part_num>A</dimm_part_num>"
        "<revision_start>0</revision_start><revision_end>0</revision_end></t>");
    const CTable table = {
        .version = 1, .signature = 2, .modules = {{.id = 3, .part = "A", .rev_end = 0}}};
    Store(ImageOf(table));
    EXPECT_EQ(Run(file).Code(), SUCCESS);
    EXPECT_THAT(LinesWith("Warning : "),
                ElementsAre("Warning : \"register_set\" not found but ignored.",
                            "Warning : \"offset\" not found but ignored.",
                            "Warning : \"value\" not found but ignored."));
    EXPECT_EQ(Memory(0, 64), ImageOf(table));
}

// Offsets and values that do not pair up.

const char* const UNEQUAL =
    "<t><dimm_table_version>1</dimm_table_version><signature>2</signature>"
    "<jedec_manufacturer_id>3</jedec_manufacturer_id><dimm_part_num>A</dimm_part_num>"
    "<revision_start>0</revision_start><revision_end>0</revision_end>"
    "<register_set><offset>1</offset><value>2</value></register_set>"
    "<jedec_manufacturer_id>4</jedec_manufacturer_id><dimm_part_num>B-7</dimm_part_num>"
    "<revision_start>0</revision_start><revision_end>0</revision_end><register_set>";

TEST_P(ParamEepromInit, RefusesMoreOffsetsThanValues) {
    const std::string file = File(std::string(UNEQUAL) +
                                  "<offset>5</offset><value>6</value><offset>7</offset>"
                                  "<offset>8</offset></register_set></t>");
    ExpectRefusal(file, EndedBy({}, "Dimm[1] \"B-7\": 3 register offsets but 1 values\n"));
}

TEST_P(ParamEepromInit, RefusesOffsetsWithoutAnyValue) {
    const std::string file = File(std::string(UNEQUAL) + "<offset>5</offset></register_set></t>");
    ExpectRefusal(file, EndedBy({}, "Dimm[1] \"B-7\": 1 register offsets but 0 values\n"));
}

TEST_P(ParamEepromInit, DropsValuesWithoutOffsetAndSaysSo) {
    const std::string file = File(std::string(UNEQUAL) +
                                  "<offset>5</offset><value>6</value><value>7</value>"
                                  "<value>8</value></register_set></t>");
    const CTable table = {.version = 1,
                          .signature = 2,
                          .modules = {{.id = 3, .part = "A", .rev_end = 0, .regs = {{1, 2}}},
                                      {.id = 4, .part = "B-7", .rev_end = 0, .regs = {{5, 6}}}}};
    Store(ImageOf(table));
    EXPECT_EQ(Run(file).Code(), SUCCESS);
    EXPECT_THAT(m_log.Texts(0x40),
                ElementsAre("Dimm[1] \"B-7\": 3 register values but 1 offsets, the last 2 are not "
                            "stored\n"));
    EXPECT_EQ(Memory(0, ImageOf(table).size()), ImageOf(table));
}

TEST_P(ParamEepromInit, SaysWhatOfAModuleTheImageHasNoRoomFor) {
    const CTable table = {.modules = {{.id = 0x12345, .part = "A", .rev_end = 0x10000},
                                      {.id = 0x100000002, .part = "B"},
                                      {.id = 0xFFFF, .part = "C", .rev_start = 0xFFFF}}};
    Store(ImageOf(table));
    EXPECT_EQ(Run(File(table)).Code(), SUCCESS);
    EXPECT_THAT(m_log.Texts(0x40),
                ElementsAre("Dimm[0] \"A\": of the manufacturer id 0x0000000000012345 only the low "
                            "16 bits are stored\n",
                            "Dimm[0] \"A\": the revisions 0x0 to 0x10000 do not fit the 16 bits "
                            "that each has\n",
                            "Dimm[1] \"B\": of the manufacturer id 0x0000000100000002 only the low "
                            "16 bits are stored\n"));
}

TEST_P(ParamEepromInit, GivesRegistersOutsideAnySetToTheFirstModule) {
    const std::string file = File(
        "<t><offset>A</offset><value>B</value>"
        "<dimm_table_version>1</dimm_table_version><signature>2</signature>"
        "<jedec_manufacturer_id>3</jedec_manufacturer_id><dimm_part_num>A</dimm_part_num>"
        "<revision_start>0</revision_start><revision_end>0</revision_end>"
        "<register_set><offset>C</offset><value>D</value></register_set></t>");
    const CTable table = {
        .version = 1,
        .signature = 2,
        .modules = {{.id = 3, .part = "A", .rev_end = 0, .regs = {{0xA, 0xB}, {0xC, 0xD}}}}};
    Store(ImageOf(table));
    EXPECT_EQ(Run(file).Code(), SUCCESS);
    EXPECT_EQ(Memory(0, 80), ImageOf(table));
}

// Texts that look like formats.

TEST_P(ParamEepromInit, DoesNotFormatWhatTheFileSays) {
    const CTable table = {.modules = {{.part = "50%s%n%d"}}};
    const std::string file = File(XmlOf(table), "100%s%n.xml");
    Store(ImageOf(table));
    EXPECT_EQ(Run(file).Code(), SUCCESS);
    EXPECT_THAT(LinesWith("XML file is : "), ElementsAre("XML file is : " + file + "\n"));
    EXPECT_THAT(LinesWith("convert_n_store"),
                ElementsAre("convert_n_store[partNum=8]:...50%s%n%d\n"));
    EXPECT_EQ(Memory(0, 64), ImageOf(table));
    Forget();
    const std::string none = (m_folder / "%s%n.xml").string();
    EXPECT_EQ(Run(none).bytes, Bytes{FAIL});
    EXPECT_EQ(LinesWith("Error: Xml").at(0), "Error: Xml Parsing failed. Xml file \"" + none +
                                                 "\" can not be found.\nException caught in : "
                                                 "getDimmTableFrom");
}

}  // namespace
