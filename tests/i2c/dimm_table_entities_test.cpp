// Entities that a DIMM table document declares itself: their content stands
// where they are named. What is outside the document stays there.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DimmTableEntities : public CDimmTableTest {};

TEST_F(DimmTableEntities, GiveAText) {
    Parse(Document("<!ENTITY maker \"PN-EXAMPLE-02\"><!ENTITY size '0x40'>",
                   Header() + Module("1", "&maker;") + RegisterSet(Pair("&size;", "&size;"))));
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-02");
    EXPECT_THAT(Offsets(0), ElementsAre(0x40));
    EXPECT_THAT(Values(0), ElementsAre(0x40));
}

TEST_F(DimmTableEntities, EndATextInFrontOfThem) {
    Parse(Document("<!ENTITY tail '34'>",
                   Header() + Module("12&tail;", "PN&tail;X") + RegisterSet(Pair("1", "2"))));
    EXPECT_EQ(Entry(0).man_id_l, 0x12U);
    EXPECT_STREQ(PartNum(0), "PN");
}

TEST_F(DimmTableEntities, EndTheirTextAtTheirOwnEnd) {
    Parse(Document("<!ENTITY head '12'>",
                   Header() + Module("&head;34", "&head;PN") + RegisterSet(Pair("1", "2"))));
    EXPECT_EQ(Entry(0).man_id_l, 0x12U);
    EXPECT_STREQ(PartNum(0), "12");
}

TEST_F(DimmTableEntities, GiveElements) {
    Parse(Document("<!ENTITY pair '<offset>10</offset><value>5</value>'>",
                   Required() + "<register_set>\n&pair;&pair;</register_set>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x10));
    EXPECT_THAT(Values(0), ElementsAre(5, 5));
}

TEST_F(DimmTableEntities, GiveAWholeModule) {
    Parse(
        Document("<!ENTITY module '<jedec_manufacturer_id>A1</jedec_manufacturer_id>"
                 "<dimm_part_num>PN</dimm_part_num><revision_start>1</revision_start>"
                 "<revision_end>2</revision_end>'>",
                 Header() + "&module;&module;\n"));
    ASSERT_EQ(m_table.num_Entries, 2U);
    for (size_t k = 0; k < 2; ++k) {
        EXPECT_EQ(Entry(k).man_id_l, 0xA1U);
        EXPECT_STREQ(PartNum(k), "PN");
        EXPECT_EQ(Entry(k).rev_Start, 1U);
        EXPECT_EQ(Entry(k).rev_End, 2U);
    }
}

TEST_F(DimmTableEntities, DoNotBringTheirNeighboursAlong) {
    Parse(
        Document("<!ENTITY one '<offset>1</offset>'>\n<!ENTITY two '<offset>2</offset>'>\n"
                 "<!ENTITY three '<offset>3</offset>'>",
                 Required() + "<register_set>\n&two;&one;&three;" + Element("value", "7") +
                     "</register_set>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(2, 1, 3));
}

TEST_F(DimmTableEntities, NameOneAnother) {
    Parse(
        Document("<!ENTITY inner '<offset>10</offset>'>"
                 "<!ENTITY outer '&inner;<value>1</value>&inner;<value>2</value>'>",
                 Required() + "<register_set>\n&outer;</register_set>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x10));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
}

TEST_F(DimmTableEntities, CountOnlyWhereTheyAreNamed) {
    Parse(Document("<!ENTITY unused '<offset>10</offset>'>", Required()));
    EXPECT_THAT(Offsets(0), IsEmpty());
}

TEST_F(DimmTableEntities, AreNoItemWhenEmpty) {
    Parse(Document("<!ENTITY nothing ''>",
                   Required() + RegisterSet(Element("offset", "&nothing;") + "<face/>\n" +
                                            Element("value", "&nothing;2"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0xFACE));
    EXPECT_THAT(Values(0), ElementsAre(2));
}

TEST_F(DimmTableEntities, FollowTheRuleForWhiteSpace) {
    Parse(Document("<!ENTITY broken '\n10'><!ENTITY blank ' 10'>",
                   Required() + RegisterSet(Element("offset", "&broken;") +
                                            Element("offset", "&blank;") + Element("value", "7"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0, 0x10));
}

TEST_F(DimmTableEntities, AreDeclaredByParameterEntitiesToo) {
    Parse(Document("<!ENTITY % declare \"<!ENTITY late 'DEAD'>\">\n%declare;",
                   Required() + RegisterSet(Pair("&late;", "1"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0xDEAD));
}

TEST_F(DimmTableEntities, KeepTheirFirstDeclaration) {
    Parse(Document("<!ENTITY twice '1'><!ENTITY twice '2'>",
                   Required() + RegisterSet(Pair("&twice;", "7"))));
    EXPECT_THAT(Offsets(0), ElementsAre(1));
}

TEST_F(DimmTableEntities, MayBeNamedAThousandTimes) {
    std::string references;
    for (int i = 0; i < 1000; ++i) {
        references += "&pair;";
    }
    Parse(Document("<!ENTITY pair '<offset>10</offset><value>5</value>'>",
                   Required() + "<register_set>\n" + references + "</register_set>\n"));
    EXPECT_EQ(Offsets(0), Numbers(1000, 0x10));
    EXPECT_EQ(Values(0), Numbers(1000, 5));
}

TEST_F(DimmTableEntities, AreNotTakenFromAttributes) {
    Parse(Document(
        "<!ENTITY text 'offset'><!ATTLIST value unit CDATA 'offset'>",
        Required() + RegisterSet("<offset unit='&text;'>10</offset>\n" + Element("value", "1"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
}

TEST_F(DimmTableEntities, MustBeDeclared) {
    EXPECT_EQ(FailureOf(Document(Header() + Module("1", "&nobody;"))), NO_XML_FILE_FOUND);
}

}  // namespace
