// What the parser logs, in order and at which level.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class DimmTableLog : public CDimmTableTest {
  protected:
    static CLogCapture::Line Progress(const std::string& text) { return {LW_SW_TRACE, text}; }
    static CLogCapture::Line Error(const std::string& text) { return {LW_ERR_TEST, text}; }

    // The lines up to the counting of elements.
    static Lines UpToCounting() {
        return {
            Progress("Starting init()...\n\n"),
            Progress("finished getXmlDoc()\n\n"),
            Progress("finished xmlDocGetRootElement()\n\n"),
            Progress("finished extract_data()\n\n"),
            Progress("starting checkForErrors()...\n\n"),
            Progress("finished countTagOccurance()\n\n"),
        };
    }
    // The lines from there up to the placing of texts.
    static Lines FromCountingOn() {
        return {
            Progress("finished checkTagsNonZero()\n\n"),
            Progress("finished checkHeaderTagsEq()\n\n"),
            Progress("finished checkForErrors()\n\n"),
        };
    }
    static Lines Joined(const std::vector<Lines>& parts) {
        Lines lines;
        for (const Lines& part : parts) {
            lines.insert(lines.end(), part.begin(), part.end());
        }
        return lines;
    }
    // A table without one of the elements that it needs.
    static std::string Without(const std::string& name) {
        std::string xml = Document(Required() + RegisterSet(Pair("10", "1")));
        const size_t begin = xml.find("    <" + name);
        xml.erase(begin, xml.find('\n', begin) + 1 - begin);
        return xml;
    }
};

static_assert(LW_ERR_TEST == 0x10 && LW_SW_TRACE == 0xA1);

TEST_F(DimmTableLog, TellsEachStep) {
    Parse(Example());
    EXPECT_THAT(
        m_log.Lines(),
        ElementsAreArray(Joined({UpToCounting(),
                                 FromCountingOn(),
                                 {Progress("finished placeTextNodesinTags()\n\n"),
                                  Progress("convert_n_store[partNum=13]:...PN-EXAMPLE-01\n"),
                                  Progress("finished m_Assigner.assignData()\n\n"),
                                  Progress("printDimmTable()[0]...\n\n")}})));
}

TEST_F(DimmTableLog, TellsEachModule) {
    Parse(Document(Header() + Module("A1", "PN-1") + Module("A2", "PN-22") +
                   Module("A3", "PN-333") + RegisterSet(Pair("10", "1"))));
    EXPECT_THAT(m_log.Lines(),
                ElementsAreArray(Joined({UpToCounting(),
                                         FromCountingOn(),
                                         {Progress("finished placeTextNodesinTags()\n\n"),
                                          Progress("convert_n_store[partNum=4]:...PN-1\n"),
                                          Progress("convert_n_store[partNum=5]:...PN-22\n"),
                                          Progress("convert_n_store[partNum=6]:...PN-333\n"),
                                          Progress("finished m_Assigner.assignData()\n\n"),
                                          Progress("printDimmTable()[0]...\n\n"),
                                          Progress("printDimmTable()[1]...\n\n"),
                                          Progress("printDimmTable()[2]...\n\n")}})));
}

TEST_F(DimmTableLog, WarnsOfATableWithoutRegisters) {
    Parse(Document(Required()));
    EXPECT_THAT(
        m_log.Lines(),
        ElementsAreArray(Joined({UpToCounting(),
                                 {Progress("Warning : \"register_set\" not found but ignored."),
                                  Progress("Warning : \"offset\" not found but ignored."),
                                  Progress("Warning : \"value\" not found but ignored.")},
                                 FromCountingOn(),
                                 {Progress("finished placeTextNodesinTags()\n\n"),
                                  Progress("convert_n_store[partNum=13]:...PN-EXAMPLE-01\n"),
                                  Progress("finished m_Assigner.assignData()\n\n"),
                                  Progress("printDimmTable()[0]...\n\n")}})));
}

TEST_F(DimmTableLog, WarnsOfWhatIsMissingAlone) {
    const std::string register_set = "Warning : \"register_set\" not found but ignored.";
    const std::string offset = "Warning : \"offset\" not found but ignored.";
    const std::string value = "Warning : \"value\" not found but ignored.";
    const struct {
        std::string body;
        Texts warnings;
    } cases[] = {
        {Pair("1", "2"), {register_set}},
        {RegisterSet(Element("value", "1")), {offset}},
        {RegisterSet(Element("offset", "1")), {value}},
        {Element("offset", "1"), {register_set, value}},
        {Element("value", "1"), {register_set, offset}},
        {"<register_set/>\n<x/>\n", {offset, value}},
        {RegisterSet(Pair("1", "2")), {}},
    };
    for (const auto& [body, warnings] : cases) {
        m_log.Clear();
        Parse(Document(Required() + body));
        Texts found;
        for (const std::string& text : CDimmTableTest::Progress()) {
            if (text.starts_with("Warning")) {
                found.push_back(text);
            }
        }
        EXPECT_EQ(found, warnings) << body;
        EXPECT_THAT(Errors(), IsEmpty());
    }
}

TEST_F(DimmTableLog, NamesAnElementThatIsMissing) {
    for (const std::string name : {"dimm_table_version", "jedec_manufacturer_id", "signature",
                                   "dimm_part_num", "revision_start", "revision_end"}) {
        m_log.Clear();
        EXPECT_EQ(FailureOf(Without(name)), XML_MISSING_TAGS) << name;
        EXPECT_THAT(
            m_log.Lines(),
            ElementsAreArray(Joined({UpToCounting(), {Error("error : \"" + name + "\"\n")}})));
    }
}

TEST_F(DimmTableLog, NamesTheFirstOfTheMissingElements) {
    // In the order of the identifiers, not of a document.
    const std::string elements[] = {"dimm_table_version", "jedec_manufacturer_id", "signature",
                                    "dimm_part_num",      "revision_start",        "revision_end"};
    std::string present;
    for (const std::string& missing : elements) {
        m_log.Clear();
        EXPECT_EQ(FailureOf(Document(present)), XML_MISSING_TAGS);
        EXPECT_THAT(Errors(), ElementsAre("error : \"" + missing + "\"\n"));
        present += Element(missing, "1");
    }
    m_log.Clear();
    EXPECT_EQ(FailureOf(Document(present)), std::nullopt);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(DimmTableLog, WarnsOfNothingInATableThatIsRefused) {
    // Registers are missing too, but what is needed is missed first.
    EXPECT_EQ(FailureOf(Document(Header())), XML_MISSING_TAGS);
    EXPECT_THAT(
        m_log.Lines(),
        ElementsAreArray(Joined({UpToCounting(), {Error("error : \"jedec_manufacturer_id\"\n")}})));
}

TEST_F(DimmTableLog, NamesAnElementWithoutAText) {
    const struct {
        std::string name;
        std::string body;
    } cases[] = {
        {"value", RegisterSet(Element("offset", "1") + "<value/>\n")},
        {"offset", "<offset></offset>\n"},
        {"signature", Element("signature", "")},
        {"dimm_table_version", Element("dimm_table_version", "<!-- 1 -->")},
        {"jedec_manufacturer_id", Element("jedec_manufacturer_id", "<![CDATA[1]]>")},
        {"dimm_part_num", Element("dimm_part_num", "\n PN \n")},
        {"revision_start", Element("revision_start", "\t1")},
        {"revision_end", Element("revision_end", "<?pi 1?>")},
        {"offset", "<note>offset</note>\n"},
    };
    for (const auto& [name, body] : cases) {
        m_log.Clear();
        // A whole set in front, so that no warning is mixed in.
        EXPECT_EQ(FailureOf(Document(Required() + RegisterSet(Pair("1", "2")) + body)),
                  XML_FORMAT_ERROR)
            << body;
        EXPECT_THAT(m_log.Lines(),
                    ElementsAreArray(Joined(
                        {UpToCounting(),
                         FromCountingOn(),
                         {Error("error : \"" + name + "\" is the last item and has no text\n"),
                          Error("Error in Parsing. Check Xml file.\n")}})));
    }
}

TEST_F(DimmTableLog, TellsAFileThatCannotBeReadInNoErrorOfItsOwn) {
    EXPECT_EQ(FailureOf("no table at all\n"), NO_XML_FILE_FOUND);
    EXPECT_EQ(FailureOfFile((m_folder / "missing.xml").string()), NO_XML_FILE_FOUND);
    EXPECT_THAT(m_log.Lines(), ElementsAre(Progress("Starting init()...\n\n"),
                                           Progress("Starting init()...\n\n")));
}

TEST_F(DimmTableLog, TellsTheBeginningWhenTheParserIsMade) {
    const std::string file = Write("table.xml", Example()).string();
    DimmTable table;
    const Parser parser(file.c_str(), &table);
    EXPECT_THAT(m_log.Lines(), ElementsAre(Progress("Starting init()...\n\n")));
}

TEST_F(DimmTableLog, TakesAPartNumberForNoFormat) {
    Parse(Document(Header() + Module("1", "%s%n%d%%")));
    EXPECT_THAT(CDimmTableTest::Progress(),
                testing::Contains("convert_n_store[partNum=8]:...%s%n%d%%\n"));
}

TEST_F(DimmTableLog, CountsAPartNumberInBytes) {
    Parse(Document(Header() + Module("1", "M\xC3\xBC")));
    EXPECT_THAT(CDimmTableTest::Progress(),
                testing::Contains("convert_n_store[partNum=3]:...M\xC3\xBC\n"));
}

}  // namespace
