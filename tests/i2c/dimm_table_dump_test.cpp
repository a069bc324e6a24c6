// The table as text, byte for byte, in the pieces in which it is logged.
#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class DimmTableDump : public CDimmTableTest {};

TEST_F(DimmTableDump, ShowsTheExample) {
    EXPECT_THAT(Parse(Example()),
                ElementsAre("Dimm Table Header: \n"
                            "Entry 1\n"
                            "Dimm version = 3\n"
                            "jedec_manufacturer_id =  0x00000000 0x00001234\n"
                            "Dimm Table Sz = 0\n"
                            "signature =  0xA5A50001\n"
                            "dimm_part_num = PN-EXAMPLE-01\n"
                            "revision_start =  0x00000000\n"
                            "revision_end =  0x000000FF\n"
                            "num_reg = 0\n"
                            "Register Array:\n",
                            "\noffset =  0x00000010\nvalue =  0x0000001F",
                            "\noffset =  0x00000014\nvalue =  0x00000200", "\n\n"));
}

TEST_F(DimmTableDump, ShowsEachModuleWithTheNumberOfAll) {
    EXPECT_THAT(
        Parse(Document(Element("dimm_table_version", "1A") + Element("signature", "56454C44") +
                       Module("0x123456789ABCDEF0", "PN-1", "1", "2") +
                       RegisterSet(Pair("DEADBEEF", "0")) + Module("2", "PN-2", "3", "4") +
                       RegisterSet(Pair("10", "1") + Pair("14", "FFFFFFFF")))),
        ElementsAre("Dimm Table Header: \n"
                    "Entry 2\n"
                    "Dimm version = 26\n"
                    "jedec_manufacturer_id =  0x12345678 0x9ABCDEF0\n"
                    "Dimm Table Sz = 0\n"
                    "signature =  0x56454C44\n"
                    "dimm_part_num = PN-1\n"
                    "revision_start =  0x00000001\n"
                    "revision_end =  0x00000002\n"
                    "num_reg = 0\n"
                    "Register Array:\n",
                    "\noffset =  0xDEADBEEF\nvalue =  0x00000000", "\n\n",
                    "Dimm Table Header: \n"
                    "Entry 2\n"
                    "Dimm version = 26\n"
                    "jedec_manufacturer_id =  0x00000000 0x00000002\n"
                    "Dimm Table Sz = 0\n"
                    "signature =  0x56454C44\n"
                    "dimm_part_num = PN-2\n"
                    "revision_start =  0x00000003\n"
                    "revision_end =  0x00000004\n"
                    "num_reg = 0\n"
                    "Register Array:\n",
                    "\noffset =  0x00000010\nvalue =  0x00000001",
                    "\noffset =  0x00000014\nvalue =  0xFFFFFFFF", "\n\n"));
}

TEST_F(DimmTableDump, ShowsAModuleWithoutRegisters) {
    const Texts dump = Parse(Document(Required()));
    ASSERT_THAT(dump, SizeIs(2));
    EXPECT_THAT(dump[0], testing::EndsWith("num_reg = 0\nRegister Array:\n"));
    EXPECT_EQ(dump[1], "\n\n");
}

TEST_F(DimmTableDump, ShowsNothingForAPartNumberThatIsNotThere) {
    const Texts dump = Parse(Document(Required() + Element("jedec_manufacturer_id", "0x5678")));
    ASSERT_THAT(dump, SizeIs(4));
    EXPECT_THAT(dump[0], HasSubstr("\ndimm_part_num = PN-EXAMPLE-01\nrevision_start"));
    EXPECT_EQ(dump[2],
              "Dimm Table Header: \n"
              "Entry 2\n"
              "Dimm version = 3\n"
              "jedec_manufacturer_id =  0x00000000 0x00005678\n"
              "Dimm Table Sz = 0\n"
              "signature =  0xA5A50001\n"
              "dimm_part_num = \n"
              "revision_start =  0x00000000\n"
              "revision_end =  0x00000000\n"
              "num_reg = 0\n"
              "Register Array:\n");
}

TEST_F(DimmTableDump, ShowsTheVersionAsASignedNumber) {
    const auto version = [this](const std::string& text) {
        return Parse(Document(Element("dimm_table_version", text) + Element("signature", "1") +
                              Module("1", "PN")))
            .at(0);
    };
    EXPECT_THAT(version("7FFFFFFF"), HasSubstr("\nDimm version = 2147483647\n"));
    EXPECT_THAT(version("80000000"), HasSubstr("\nDimm version = -2147483648\n"));
    EXPECT_THAT(version("FFFFFFFF"), HasSubstr("\nDimm version = -1\n"));
    EXPECT_THAT(version("0"), HasSubstr("\nDimm version = 0\n"));
}

TEST_F(DimmTableDump, ShowsAPartNumberWhole) {
    const std::string part_num = std::string(3000, 'P') + "%s%n";
    EXPECT_THAT(Parse(Document(Header() + Module("1", part_num))).at(0),
                HasSubstr("\ndimm_part_num = " + part_num + "\nrevision_start"));
}

TEST_F(DimmTableDump, EndsBehindTheLastModule) {
    for (const std::string& text : Parse(Example())) {
        EXPECT_THAT(text, Not(HasSubstr("end*")));
    }
}

TEST_F(DimmTableDump, ShowsAsManyPairsAsThereAreValues) {
    EXPECT_THAT(Parse(Document(Required() + RegisterSet(Pair("10", "1") + Element("offset", "14") +
                                                        Element("offset", "18")))),
                ElementsAre(StartsWith("Dimm Table Header: \n"),
                            "\noffset =  0x00000010\nvalue =  0x00000001", "\n\n"));
}

TEST_F(DimmTableDump, ShowsNoOffsetThatIsNotThere) {
    const Texts dump =
        Parse(Document(Required() + RegisterSet(Pair("10", "1") + Element("value", "2")) +
                       Module("2", "PN-2") + RegisterSet(Pair("20", "3"))));
    ASSERT_GE(dump.size(), 6U);
    EXPECT_EQ(dump[1], "\noffset =  0x00000010\nvalue =  0x00000001");
    for (const std::string& text : dump) {
        EXPECT_THAT(text, Not(HasSubstr("\noffset =  0x00000010\nvalue =  0x00000002")));
        EXPECT_THAT(text, Not(HasSubstr("\noffset =  0x00000020\nvalue =  0x00000002")));
    }
    EXPECT_EQ(dump[dump.size() - 2], "\noffset =  0x00000020\nvalue =  0x00000003");
    EXPECT_EQ(dump.back(), "\n\n");
}

}  // namespace
