// What a document must not bring in from elsewhere: a file that only the
// reader may read must not show in anything that the parser says.
#include <filesystem>

#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class DimmTableSecrets : public CDimmTableTest {
  protected:
    static constexpr const char* SECRET = "DEADBEEF";

    DimmTableSecrets()
        : m_secret(Write("secret.txt", SECRET)),
          m_declarations(Write("secret.dtd", "<!ENTITY secret '" + std::string(SECRET) +
                                                 "'>\n<!ATTLIST offset x CDATA '" + SECRET +
                                                 "'>\n")) {}

    // Reads it, in whatever way it can be read, and looks for the secret.
    void ExpectNothingOf(const std::string& xml) {
        m_log.Clear();
        const std::string file = Write("table.xml", xml).string();
        std::string found;
        {
            m_table = DimmTable();
            Parser parser(file.c_str(), &m_table);
            try {
                for (const std::string& text : parser.parse()) {
                    found += text;
                }
            } catch (Xml_Exceptions) {
                found += "refused";
            }
            found += parser.getReadFault();
        }
        for (const CLogCapture::Line& line : m_log.Lines()) {
            found += line.second;
        }
        for (const Entries& entry : m_table.entry) {
            found += entry.PartNumText();
        }
        EXPECT_NE(found, "");
        EXPECT_THAT(found, Not(HasSubstr(SECRET))) << xml;
        EXPECT_THAT(found, Not(HasSubstr("deadbeef"))) << xml;
    }
    static std::string Body() {
        return Header() + Module("&secret;", "&secret;", "&secret;", "&secret;") +
               RegisterSet(Pair("&secret;", "&secret;")) + "<end/>\n";
    }

    const std::filesystem::path m_secret;
    const std::filesystem::path m_declarations;
};

TEST_F(DimmTableSecrets, ShowWhereTheyAreGivenOpenly) {
    // The body would show a secret, so that looking for it means something.
    Parse(Document("<!ENTITY secret '" + std::string(SECRET) + "'>", Body()));
    EXPECT_STREQ(PartNum(0), SECRET);
    EXPECT_EQ(Entry(0).man_id_l, 0xDEADBEEFU);
    EXPECT_THAT(Offsets(0), ElementsAre(0xDEADBEEF));
}

TEST_F(DimmTableSecrets, AreNotReadFromAFile) {
    for (const std::string& name :
         {m_secret.string(), "file://" + m_secret.string(), std::string("secret.txt"),
          std::string("./secret.txt"), "file:" + m_secret.string()}) {
        ExpectNothingOf(Document("<!ENTITY secret SYSTEM '" + name + "'>", Body()));
        EXPECT_EQ(Entry(0).man_id_l, 0xDU);  // the name "dimm_part_num"
        ExpectNothingOf(
            Document("<!ENTITY secret PUBLIC '-//nobody//secret' '" + name + "'>", Body()));
    }
}

TEST_F(DimmTableSecrets, AreNotReadFromDeclarationsElsewhere) {
    for (const std::string& name : {m_declarations.string(), "file://" + m_declarations.string(),
                                    std::string("secret.dtd")}) {
        ExpectNothingOf("<!DOCTYPE t SYSTEM '" + name + "'>\n<t>\n" + Body() + "</t>\n");
        ExpectNothingOf("<!DOCTYPE t PUBLIC '-//nobody//secret' '" + name + "'>\n<t>\n" + Body() +
                        "</t>\n");
        ExpectNothingOf(Document("<!ENTITY % all SYSTEM '" + name + "'>\n%all;", Body()));
    }
}

TEST_F(DimmTableSecrets, AreNotReadInTwoSteps) {
    ExpectNothingOf(Document("<!ENTITY % file SYSTEM '" + m_secret.string() + "'>\n" +
                                 "<!ENTITY % make \"<!ENTITY secret '&#37;file;'>\">\n%make;",
                             Body()));
    ExpectNothingOf(Document(
        "<!ENTITY inner SYSTEM '" + m_secret.string() + "'><!ENTITY secret '&inner;'>", Body()));
}

TEST_F(DimmTableSecrets, AreNotReadFromAnAttribute) {
    ExpectNothingOf(Document("<!ENTITY secret SYSTEM '" + m_secret.string() + "'>",
                             Required() + "<offset x=\"&secret;\">1</offset>\n<x/>\n"));
}

TEST_F(DimmTableSecrets, AreNotIncluded) {
    ExpectNothingOf(Document(
        Header() + Module("1",
                          "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' parse='text'"
                          " href='" +
                              m_secret.string() + "'/>")));
}

TEST_F(DimmTableSecrets, AreNotNamedByAnInstruction) {
    ExpectNothingOf("<?xml-stylesheet href='" + m_secret.string() +
                    "'?>\n<?oasis-xml-catalog "
                    "catalog='" +
                    m_declarations.string() + "'?>\n<t>\n" + Required() + "</t>\n");
}

}  // namespace
