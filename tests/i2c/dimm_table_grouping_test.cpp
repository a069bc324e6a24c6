// Which module an element belongs to: the k-th of its name is the k-th
// module's, and registers belong to the "register_set" that they follow.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::SizeIs;

class DimmTableGrouping : public CDimmTableTest {
  protected:
    // Three modules without registers.
    static std::string Three() {
        return Header() + Module("A1", "PN-1", "10", "11") + Module("A2", "PN-2", "20", "21") +
               Module("A3", "PN-3", "30", "31");
    }
};

TEST_F(DimmTableGrouping, ReadsTheExample) {
    Parse(Example());
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_EQ(m_table.dimm_version, 3U);
    EXPECT_EQ(m_table.signature, 0xA5A50001U);
    EXPECT_EQ(Entry(0).man_id_h, 0U);
    EXPECT_EQ(Entry(0).man_id_l, 0x1234U);
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    EXPECT_EQ(Entry(0).rev_Start, 0U);
    EXPECT_EQ(Entry(0).rev_End, 0xFFU);
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14));
    EXPECT_THAT(Values(0), ElementsAre(0x1F, 0x200));
}

TEST_F(DimmTableGrouping, LeavesToOthersWhatTheImageNeeds) {
    Parse(Example());
    EXPECT_EQ(m_table.dimmtable_size, 0U);
    EXPECT_EQ(Entry(0).num_Reg, 0U);
    EXPECT_THAT(m_table.Regs_offsets, IsEmpty());
}

TEST_F(DimmTableGrouping, LetsTheLastModuleEndInAnEmptySet) {
    for (const char* empty : {"<register_set/>\n", "<register_set>\n</register_set>\n"}) {
        Parse(Document(Header() + Module("A1", "PN-1") + RegisterSet(Pair("1", "2")) +
                       Module("A2", "PN-2") + empty));
        ASSERT_EQ(m_table.num_Entries, 2U);
        EXPECT_THAT(Offsets(0), ElementsAre(1));
        EXPECT_THAT(Offsets(1), IsEmpty());
    }
}

TEST_F(DimmTableGrouping, KnowsAModuleWithoutRegisters) {
    Parse(Document(Required()));
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_THAT(Offsets(0), IsEmpty());
    EXPECT_THAT(Values(0), IsEmpty());
}

TEST_F(DimmTableGrouping, GivesEachModuleItsOwn) {
    Parse(Document(Three()));
    ASSERT_EQ(m_table.num_Entries, 3U);
    for (uint32_t k = 0; k < 3; ++k) {
        EXPECT_EQ(Entry(k).man_id_l, 0xA1 + k);
        EXPECT_EQ(PartNum(k), "PN-" + std::to_string(k + 1));
        EXPECT_EQ(Entry(k).rev_Start, 0x10 * (k + 1));
        EXPECT_EQ(Entry(k).rev_End, 0x10 * (k + 1) + 1);
    }
}

TEST_F(DimmTableGrouping, HasTwiceTheRecordsAndTheSecondHalfEmpty) {
    Parse(Document(Three() + RegisterSet(Pair("1", "2")) + RegisterSet(Pair("3", "4")) +
                   RegisterSet(Pair("5", "6")) + RegisterSet(Pair("7", "8"))));
    ASSERT_THAT(m_table.entry, SizeIs(6));
    for (size_t k = 3; k < 6; ++k) {
        EXPECT_EQ(Entry(k).man_id_h, 0U);
        EXPECT_EQ(Entry(k).man_id_l, 0U);
        EXPECT_EQ(Entry(k).rev_Start, 0U);
        EXPECT_EQ(Entry(k).rev_End, 0U);
        EXPECT_EQ(Entry(k).num_Reg, 0U);
        EXPECT_THAT(PartNum(k), IsNull());
        EXPECT_THAT(Offsets(k), IsEmpty());
        EXPECT_THAT(Values(k), IsEmpty());
    }
}

TEST_F(DimmTableGrouping, IgnoresTheOrderInsideAModule) {
    Parse(Document(Header() + Element("revision_end", "11") + RegisterSet(Pair("1", "2")) +
                   Element("dimm_part_num", "PN-1") + Element("revision_start", "10") +
                   Element("jedec_manufacturer_id", "A1") + Element("dimm_part_num", "PN-2") +
                   Element("jedec_manufacturer_id", "A2") + Element("revision_start", "20") +
                   Element("revision_end", "21") + RegisterSet(Pair("3", "4"))));
    ASSERT_EQ(m_table.num_Entries, 2U);
    EXPECT_EQ(Entry(0).man_id_l, 0xA1U);
    EXPECT_STREQ(PartNum(0), "PN-1");
    EXPECT_EQ(Entry(0).rev_Start, 0x10U);
    EXPECT_EQ(Entry(0).rev_End, 0x11U);
    EXPECT_THAT(Offsets(0), ElementsAre(1));
    EXPECT_EQ(Entry(1).man_id_l, 0xA2U);
    EXPECT_STREQ(PartNum(1), "PN-2");
    EXPECT_EQ(Entry(1).rev_Start, 0x20U);
    EXPECT_EQ(Entry(1).rev_End, 0x21U);
    EXPECT_THAT(Offsets(1), ElementsAre(3));
}

TEST_F(DimmTableGrouping, GoesByOccurrenceWhereAnElementIsMoved) {
    // The first module's last revision stands behind the second's.
    Parse(Document(Header() + Element("jedec_manufacturer_id", "A1") +
                   Element("dimm_part_num", "PN-1") + Element("revision_start", "10") +
                   Module("A2", "PN-2", "20", "21") + Element("revision_end", "11")));
    EXPECT_EQ(Entry(0).rev_Start, 0x10U);
    EXPECT_EQ(Entry(0).rev_End, 0x21U);
    EXPECT_EQ(Entry(1).rev_Start, 0x20U);
    EXPECT_EQ(Entry(1).rev_End, 0x11U);
}

TEST_F(DimmTableGrouping, ReadsATableByColumns) {
    Parse(Document(Element("revision_end", "11") + Element("revision_end", "21") +
                   Element("revision_start", "10") + Element("revision_start", "20") +
                   Element("dimm_part_num", "PN-1") + Element("dimm_part_num", "PN-2") +
                   Element("jedec_manufacturer_id", "A1") + Element("jedec_manufacturer_id", "A2") +
                   Header()));
    EXPECT_EQ(m_table.dimm_version, 3U);
    EXPECT_EQ(m_table.signature, 0xA5A50001U);
    EXPECT_EQ(Entry(0).man_id_l, 0xA1U);
    EXPECT_STREQ(PartNum(0), "PN-1");
    EXPECT_EQ(Entry(0).rev_Start, 0x10U);
    EXPECT_EQ(Entry(0).rev_End, 0x11U);
    EXPECT_EQ(Entry(1).man_id_l, 0xA2U);
    EXPECT_STREQ(PartNum(1), "PN-2");
    EXPECT_EQ(Entry(1).rev_Start, 0x20U);
    EXPECT_EQ(Entry(1).rev_End, 0x21U);
}

TEST_F(DimmTableGrouping, HasAsManyModulesAsManufacturers) {
    Parse(Document(Header() + Module("A1", "PN-1", "10", "11") +
                   Element("jedec_manufacturer_id", "A2")));
    EXPECT_EQ(m_table.num_Entries, 2U);
    EXPECT_STREQ(PartNum(0), "PN-1");
    EXPECT_EQ(Entry(1).man_id_l, 0xA2U);
    EXPECT_THAT(PartNum(1), IsNull());
    EXPECT_EQ(Entry(1).rev_Start, 0U);
    EXPECT_EQ(Entry(1).rev_End, 0U);
}

TEST_F(DimmTableGrouping, IgnoresWhatNoModuleIsThereFor) {
    Parse(Document(Required() + Element("dimm_part_num", "PN-2") + Element("revision_start", "77") +
                   Element("revision_end", "88")));
    EXPECT_EQ(m_table.num_Entries, 1U);
    ASSERT_THAT(m_table.entry, SizeIs(2));
    EXPECT_STREQ(PartNum(0), "PN-EXAMPLE-01");
    EXPECT_EQ(Entry(0).rev_Start, 0U);
    EXPECT_EQ(Entry(0).rev_End, 0xFFU);
    EXPECT_THAT(PartNum(1), IsNull());
    EXPECT_EQ(Entry(1).rev_Start, 0U);
}

TEST_F(DimmTableGrouping, KeepsTheFirstOfTwoPartNumbersOfOneModule) {
    Parse(Document(Header() + Element("jedec_manufacturer_id", "A1") +
                   Element("dimm_part_num", "PN-FIRST") + Element("dimm_part_num", "PN-SECOND") +
                   Element("revision_start", "0") + Element("revision_end", "1")));
    EXPECT_STREQ(PartNum(0), "PN-FIRST");
}

TEST_F(DimmTableGrouping, HandsASecondPartNumberToTheNextModule) {
    Parse(Document(Header() + Element("jedec_manufacturer_id", "A1") +
                   Element("dimm_part_num", "PN-1") + Element("dimm_part_num", "PN-1b") +
                   Element("revision_start", "0") + Element("revision_end", "1") +
                   Module("A2", "PN-2")));
    EXPECT_STREQ(PartNum(0), "PN-1");
    EXPECT_STREQ(PartNum(1), "PN-1b");
}

TEST_F(DimmTableGrouping, TakesTheHeaderFromItsFirstElements) {
    Parse(Document(Three() + Element("dimm_table_version", "77") + Element("signature", "88") +
                   Element("signature", "99")));
    EXPECT_EQ(m_table.dimm_version, 3U);
    EXPECT_EQ(m_table.signature, 0xA5A50001U);
}

TEST_F(DimmTableGrouping, TakesTheHeaderFromAnywhere) {
    Parse(Document(Module("A1", "PN-1") + Element("signature", "56454C44") + Module("A2", "PN-2") +
                   Element("dimm_table_version", "9")));
    EXPECT_EQ(m_table.signature, 0x56454C44U);
    EXPECT_EQ(m_table.dimm_version, 9U);
    EXPECT_EQ(m_table.num_Entries, 2U);
}

TEST_F(DimmTableGrouping, PutsEachRegisterSetToItsModule) {
    Parse(Document(Header() + Module("A1", "PN-1") +
                   RegisterSet(Pair("10", "1") + Pair("14", "2")) + Module("A2", "PN-2") +
                   RegisterSet("") + Module("A3", "PN-3") + RegisterSet(Pair("30", "3"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
    EXPECT_THAT(Offsets(1), IsEmpty());
    EXPECT_THAT(Values(1), IsEmpty());
    EXPECT_THAT(Offsets(2), ElementsAre(0x30));
    EXPECT_THAT(Values(2), ElementsAre(3));
}

TEST_F(DimmTableGrouping, GoesByTheNumberOfTheRegisterSetNotByItsPlace) {
    // Both sets stand behind the third module and are the first two's.
    Parse(Document(Three() + RegisterSet(Pair("10", "1")) + RegisterSet(Pair("20", "2"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_THAT(Offsets(1), ElementsAre(0x20));
    EXPECT_THAT(Offsets(2), IsEmpty());
}

TEST_F(DimmTableGrouping, GoesByTheOpeningOfARegisterSet) {
    // Registers behind a closed set are still that set's.
    Parse(Document(Three() + RegisterSet(Pair("10", "1")) + Pair("14", "2") +
                   RegisterSet(Pair("20", "3")) + Pair("24", "4")));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
    EXPECT_THAT(Offsets(1), ElementsAre(0x20, 0x24));
    EXPECT_THAT(Values(1), ElementsAre(3, 4));
}

TEST_F(DimmTableGrouping, PutsRegistersWithoutASetToTheFirstModule) {
    Parse(Document(Header() + Module("A1", "PN-1") + Pair("10", "1") + Module("A2", "PN-2") +
                   Pair("20", "2")));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x20));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
    EXPECT_THAT(Offsets(1), IsEmpty());
    EXPECT_THAT(Values(1), IsEmpty());
}

TEST_F(DimmTableGrouping, PutsRegistersBeforeAndInTheFirstSetTogether) {
    Parse(Document(Header() + Pair("8", "1") + Module("A1", "PN-1") + RegisterSet(Pair("10", "2")) +
                   Module("A2", "PN-2") + RegisterSet(Pair("20", "3"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x8, 0x10));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
    EXPECT_THAT(Offsets(1), ElementsAre(0x20));
    EXPECT_THAT(Values(1), ElementsAre(3));
}

TEST_F(DimmTableGrouping, CountsSetsForOffsetsAndValuesAlike) {
    // Only offsets stand before the first set.
    Parse(Document(Header() + Element("offset", "8") + Module("A1", "PN-1") +
                   RegisterSet(Element("value", "1") + Pair("10", "2")) + Module("A2", "PN-2") +
                   RegisterSet(Pair("20", "3"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x8, 0x10));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
    EXPECT_THAT(Offsets(1), ElementsAre(0x20));
    EXPECT_THAT(Values(1), ElementsAre(3));
}

TEST_F(DimmTableGrouping, IgnoresRegisterSetsWithoutAModule) {
    Parse(Document(Required() + RegisterSet(Pair("10", "1")) + RegisterSet(Pair("20", "2")) +
                   RegisterSet(Pair("30", "3"))));
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_THAT(Values(0), ElementsAre(1));
    EXPECT_THAT(Offsets(1), IsEmpty());
}

TEST_F(DimmTableGrouping, KeepsTheRegisterSetsOwnTextNowhere) {
    Parse(Document(Required() + "<register_set>77" + Pair("10", "1") + "</register_set>\n"));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10));
    EXPECT_THAT(Values(0), ElementsAre(1));
}

TEST_F(DimmTableGrouping, PairsOffsetsAndValuesByPosition) {
    Parse(Document(Required() + RegisterSet(Element("offset", "10") + Element("offset", "14") +
                                            Element("value", "1") + Element("value", "2"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14));
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
}

TEST_F(DimmTableGrouping, TakesListsOfDifferentLength) {
    Parse(Document(Required() + RegisterSet(Pair("10", "1") + Element("offset", "14") +
                                            Element("offset", "18"))));
    EXPECT_THAT(Offsets(0), ElementsAre(0x10, 0x14, 0x18));
    EXPECT_THAT(Values(0), ElementsAre(1));
    Parse(Document(Required() + RegisterSet(Element("value", "1") + Element("value", "2"))));
    EXPECT_THAT(Offsets(0), IsEmpty());
    EXPECT_THAT(Values(0), ElementsAre(1, 2));
}

TEST_F(DimmTableGrouping, TakesManyModules) {
    constexpr uint32_t COUNT = 2000;
    std::string body = Header();
    for (uint32_t k = 0; k < COUNT; ++k) {
        const std::string number = std::to_string(1000 + k);
        body += Module(number, "PN-" + number, number, number) + RegisterSet(Pair(number, "5"));
    }
    Parse(Document(body));
    ASSERT_EQ(m_table.num_Entries, COUNT);
    ASSERT_THAT(m_table.entry, SizeIs(2 * COUNT));
    for (uint32_t k = 0; k < COUNT; ++k) {
        const std::string text = std::to_string(1000 + k);
        const auto number = static_cast<unsigned int>(std::stoul(text, nullptr, 16));
        ASSERT_EQ(Entry(k).man_id_l, number);
        ASSERT_EQ(PartNum(k), "PN-" + text);
        ASSERT_EQ(Entry(k).rev_Start, number);
        ASSERT_EQ(Entry(k).rev_End, number);
        ASSERT_THAT(Offsets(k), ElementsAre(number));
        ASSERT_THAT(Values(k), ElementsAre(5));
    }
}

}  // namespace
