// The document as a sequence of names and texts: what is an item of it, and
// that an element's text is the item behind its name.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DimmTableFlattening : public CDimmTableTest {
  protected:
    // The part number of a table whose element "dimm_part_num" is written so.
    std::string PartNumOf(const std::string& element) {
        Parse(Document(Header() + Element("jedec_manufacturer_id", "1") + element +
                       Element("revision_start", "0") + Element("revision_end", "1")));
        return Entry(0).PartNumText();
    }
    // The offset of a register pair whose element "offset" is written so.
    unsigned int OffsetOf(const std::string& element) {
        Parse(Document(Required() + RegisterSet(element + Element("value", "7"))));
        EXPECT_THAT(Values(0), ElementsAre(7)) << element;
        return Offsets(0).at(0);
    }
};

TEST_F(DimmTableFlattening, IgnoresNesting) {
    Parse(Document("<a><b><c>\n" + Header() + "</c>\n" + Element("jedec_manufacturer_id", "A1") +
                   "</b>\n<d>\n" + Element("dimm_part_num", "PN") + "</d></a>\n<e>\n" +
                   Element("revision_start", "1") + "<f>\n" + Element("revision_end", "2") +
                   "<register_set/>\n<g>\n" + Pair("10", "3") + "</g></f></e>\n"));
    EXPECT_EQ(m_table.dimm_version, 3U);
    EXPECT_EQ(Entry(0).man_id_l, 0xA1U);
    EXPECT_STREQ(PartNum(0), "PN");
    EXPECT_EQ(Entry(0).rev_Start, 1U);
    EXPECT_EQ(Entry(0).rev_End, 2U);
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_THAT(Values(0), ElementsAre(3));
}

TEST_F(DimmTableFlattening, TakesKnownElementsInsideOneAnother) {
    Parse(
        "<dimm_table_version>5<signature>6<jedec_manufacturer_id>7<dimm_part_num>PN"
        "<revision_start>8<revision_end>9<register_set><offset>A<value>B</value></offset>"
        "</register_set></revision_end></revision_start></dimm_part_num>"
        "</jedec_manufacturer_id></signature></dimm_table_version>");
    EXPECT_EQ(m_table.dimm_version, 5U);
    EXPECT_EQ(m_table.signature, 6U);
    EXPECT_EQ(Entry(0).man_id_l, 7U);
    EXPECT_STREQ(PartNum(0), "PN");
    EXPECT_EQ(Entry(0).rev_Start, 8U);
    EXPECT_EQ(Entry(0).rev_End, 9U);
    EXPECT_THAT(Offsets(0), ElementsAre(0xA));
    EXPECT_THAT(Values(0), ElementsAre(0xB));
}

TEST_F(DimmTableFlattening, VisitsChildrenBeforeTheNextSibling) {
    Parse(Document(Required() +
                   "<register_set>\n<offset>1<x><offset>2</offset></x></offset>"
                   "<offset>3</offset>" +
                   Element("value", "7") + "</register_set>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(1, 2, 3));
}

TEST_F(DimmTableFlattening, IgnoresUnknownElementsAndTheirTexts) {
    Parse(Document("<note>offset of the first</note>\n" + Required() + "<comment>17</comment>\n" +
                   "<Offset>18</Offset><OFFSET>19</OFFSET><offsets>1A</offsets>\n"));
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_THAT(Offsets(0), IsEmpty());
}

TEST_F(DimmTableFlattening, TakesARootOfAnyName) {
    Parse("<x>" + Required() + "</x>");
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    Parse("<\xC3\xBC>" + Required() + "</\xC3\xBC>");
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
}

TEST_F(DimmTableFlattening, IgnoresAttributes) {
    EXPECT_EQ(OffsetOf("<offset offset=\"5\" value='6' signature=\"7\">10</offset>\n"), 0x10U);
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_EQ(m_table.signature, 0xA5A50001U);
}

TEST_F(DimmTableFlattening, KnowsAnElementInANamespaceByItsLocalName) {
    EXPECT_EQ(OffsetOf("<r:offset xmlns:r=\"urn:registers\">10</r:offset>\n"), 0x10U);
    EXPECT_EQ(OffsetOf("<offset xmlns=\"urn:registers\">14</offset>\n"), 0x14U);
}

TEST_F(DimmTableFlattening, IgnoresCommentsAndInstructionsBesideATable) {
    Parse("<!-- <offset>1</offset> --><?offset 2?>\n" +
          Document("<!-- offset -->\n" + Required())
              .substr(std::string("<?xml version=\"1.0\"?>\n").size()) +
          "<!-- <offset>3</offset> --><?value 4?>\n");
    EXPECT_THAT(Offsets(0), IsEmpty());
    EXPECT_THAT(Values(0), IsEmpty());
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
}

TEST_F(DimmTableFlattening, IgnoresACommentBeforeAText) {
    EXPECT_EQ(OffsetOf("<offset><!-- 5 -->10</offset>\n"), 0x10U);
    EXPECT_EQ(OffsetOf("<offset><?pi 5?>10</offset>\n"), 0x10U);
}

TEST_F(DimmTableFlattening, EndsATextAtAComment) {
    EXPECT_EQ(OffsetOf("<offset>1<!-- -->0</offset>\n"), 1U);
    EXPECT_EQ(OffsetOf("<offset>1<?pi?>0</offset>\n"), 1U);
    EXPECT_EQ(PartNumOf("<dimm_part_num>PN<!-- -->-1</dimm_part_num>\n"), "PN");
}

TEST_F(DimmTableFlattening, EndsATextAtAnElement) {
    EXPECT_EQ(OffsetOf("<offset>1<b/>0</offset>\n"), 1U);
    EXPECT_EQ(PartNumOf("<dimm_part_num>PN<b>-1</b></dimm_part_num>\n"), "PN");
}

TEST_F(DimmTableFlattening, HasNoItemForACharacterDataSection) {
    EXPECT_EQ(OffsetOf("<offset>1<![CDATA[0]]></offset>\n"), 1U);
    // The item behind the name is the name of the next element.
    EXPECT_EQ(OffsetOf("<offset><![CDATA[10]]></offset>\n"), 0U);
    EXPECT_EQ(PartNumOf("<dimm_part_num><![CDATA[PN]]></dimm_part_num>\n"), "revision_start");
    EXPECT_EQ(PartNumOf("<dimm_part_num><![CDATA[PN]]>-1</dimm_part_num>\n"), "-1");
}

TEST_F(DimmTableFlattening, ReadsAnEmptyElementAsTheNextItem) {
    EXPECT_EQ(OffsetOf("<offset/>\n"), 0U);
    EXPECT_EQ(OffsetOf("<offset></offset>\n"), 0U);
    // Some names are numbers.
    EXPECT_EQ(OffsetOf("<offset/>\n<face/>\n"), 0xFACEU);
    EXPECT_EQ(OffsetOf("<offset></offset>\n<dimm/>\n"), 0xDU);
    EXPECT_EQ(OffsetOf("<offset><add>5</add></offset>\n"), 0xADDU);
    EXPECT_EQ(OffsetOf("<offset/>12\n"), 0x12U);
    EXPECT_EQ(PartNumOf("<dimm_part_num/>\n"), "revision_start");
    EXPECT_EQ(PartNumOf("<dimm_part_num></dimm_part_num>\n"), "revision_start");
}

TEST_F(DimmTableFlattening, CountsAnEmptyElementOnce) {
    Parse(
        Document(Required() + "<register_set/>\n<offset/>\n<offset/>\n<value/>\n<value/>\n<x/>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(0, 0));
    EXPECT_THAT(Values(0), ElementsAre(0, 0));
}

TEST_F(DimmTableFlattening, CountsATextThatIsAnElementsName) {
    // The part number opens an offset, whose text is the name that follows.
    Parse(Document(Header() + Module("A1", "offset") + RegisterSet(Pair("10", "1"))));
    EXPECT_STREQ(PartNum(0), "offset");
    EXPECT_THAT(Offsets(0), ElementsAre(0, 0x10));
    EXPECT_THAT(Values(0), ElementsAre(1));
}

TEST_F(DimmTableFlattening, CountsATextThatNamesAModulesElement) {
    Parse(Document("<note>jedec_manufacturer_id</note>\n" + Required()));
    ASSERT_EQ(m_table.num_Entries, 2U);
    // Its text was the name "dimm_table_version", which begins with a digit.
    EXPECT_EQ(Entry(0).man_id_l, 0xDU);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    EXPECT_EQ(Entry(1).man_id_l, 0x1234U);
}

TEST_F(DimmTableFlattening, CountsATextThatIsARegisterSet) {
    Parse(Document(Header() + Module("A1", "PN-1") + RegisterSet(Pair("10", "1")) +
                   "<note>register_set</note>\n" + Pair("20", "2") + Module("A2", "PN-2")));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_THAT(Offsets(1), ElementsAre(0x20));
}

TEST_F(DimmTableFlattening, ComparesAWholeTextWithTheNames) {
    Parse(
        Document("<note> offset</note>\n<note>offset </note>\n<note>offset\n</note>\n"
                 "<note>off<!-- -->set</note>\n" +
                 Required()));
    EXPECT_THAT(Offsets(0), IsEmpty());
}

TEST_F(DimmTableFlattening, RequiresTheSixInTextOrName) {
    // Texts count as occurrences.
    Parse(
        "<t><a>dimm_table_version</a><a>signature</a><a>jedec_manufacturer_id</a>"
        "<a>dimm_part_num</a><a>revision_start</a><a>revision_end</a><beef/></t>");
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_EQ(m_table.dimm_version, 0xAU);
    EXPECT_STREQ(PartNum(0), "a");
    EXPECT_EQ(Entry(0).rev_Start, 0xAU);
    EXPECT_EQ(Entry(0).rev_End, 0xBEEFU);
}

TEST_F(DimmTableFlattening, KeepsAPartNumberAsItIs) {
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", " PN  01\t\n")), " PN  01\t\n");
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "a%sb%nc%d")), "a%sb%nc%d");
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "M\xC3\xBC-1")), "M\xC3\xBC-1");
    const std::string longest(5000, 'P');
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", longest)), longest);
}

TEST_F(DimmTableFlattening, ResolvesCharactersInsideAText) {
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "A&amp;B&lt;C&gt;&quot;&apos;&#x44;&#69;")),
              "A&B<C>\"'DE");
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "&#x20;PN")), " PN");
    EXPECT_EQ(OffsetOf(Element("offset", "&#x31;&#48;")), 0x10U);
}

TEST_F(DimmTableFlattening, DropsATextThatBeginsWithATabOrALineBreak) {
    EXPECT_EQ(OffsetOf(Element("offset", "\n10\n")), 0U);
    EXPECT_EQ(OffsetOf(Element("offset", "\t10")), 0U);
    EXPECT_EQ(OffsetOf(Element("offset", "\r\n10")), 0U);
    EXPECT_EQ(OffsetOf(Element("offset", "&#10;10")), 0U);
    EXPECT_EQ(OffsetOf(Element("offset", "&#9;10")), 0U);
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "\n PN")), "revision_start");
}

TEST_F(DimmTableFlattening, KeepsATextThatBeginsWithABlank) {
    EXPECT_EQ(PartNumOf("<dimm_part_num/> \n"), " \n    ");
    EXPECT_EQ(PartNumOf("<dimm_part_num> </dimm_part_num>\n"), " ");
    EXPECT_EQ(OffsetOf("<offset/> <face/>\n"), 0U);
    EXPECT_EQ(OffsetOf("<offset/> 12 <face/>\n"), 0x12U);
    EXPECT_EQ(OffsetOf("<offset> <add/></offset>\n"), 0U);
    EXPECT_EQ(PartNumOf(Element("dimm_part_num", "&#13;PN")), "\rPN");
}

TEST_F(DimmTableFlattening, ReadsADocumentOnOneLine) {
    for (const std::string between : {"", " ", "\t", "  "}) {
        std::string xml = "<t>" + between;
        for (const char* element :
             {"<dimm_table_version>3</dimm_table_version>", "<signature>4</signature>",
              "<jedec_manufacturer_id>A1</jedec_manufacturer_id>",
              "<dimm_part_num>PN</dimm_part_num>", "<revision_start>1</revision_start>",
              "<revision_end>2</revision_end>", "<register_set>", "<offset>10</offset>",
              "<value>5</value>", "</register_set>", "</t>"}) {
            xml += element + between;
        }
        Parse(xml.substr(0, xml.rfind('>') + 1));
        EXPECT_EQ(m_table.dimm_version, 3U) << '"' << between << '"';
        EXPECT_EQ(m_table.signature, 4U);
        EXPECT_STREQ(PartNum(0), "PN");
        EXPECT_EQ(Entry(0).rev_End, 2U);
        EXPECT_THAT(Offsets(0), ElementsAre(0x10));
        EXPECT_THAT(Values(0), ElementsAre(5));
    }
}

TEST_F(DimmTableFlattening, ReadsLinesThatEndAsUnderWindows) {
    std::string xml;
    for (const char c : Example()) {
        xml += c == '\n' ? "\r\n" : std::string(1, c);
    }
    Parse(xml);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14));
    EXPECT_THAT(Values(0), ElementsAre(0x1F, 0x200));
}

}  // namespace
