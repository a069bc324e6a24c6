// What lives how long: parsers beside one another, and tables that outlive the parser
// that filled them.
#include <libxml/parser.h>

#include <filesystem>
#include <memory>

#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::SizeIs;

class DimmTableLifetime : public CDimmTableTest {
  protected:
    static std::string OneModule(const std::string& part_num, const std::string& offset) {
        return Document(Header() + Module("1", part_num) + RegisterSet(Pair(offset, "5")));
    }
    std::string m_first = Write("first.xml", OneModule("PN-FIRST", "10")).string();
    std::string m_second = Write("second.xml", OneModule("PN-SECOND", "20")).string();
    std::string m_broken = Write("broken.xml", "<broken>").string();
    std::string m_empty = Write("empty.xml", "<empty/>").string();
};

// What the parser's library does on this thread with an error.
class CLibraryErrors {
  public:
    CLibraryErrors() { xmlSetStructuredErrorFunc(this, &CLibraryErrors::Note); }
    ~CLibraryErrors() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
    CLibraryErrors(const CLibraryErrors&) = delete;
    CLibraryErrors& operator=(const CLibraryErrors&) = delete;

    int Count() const { return m_count; }

  private:
    static void Note(void* self, xmlErrorPtr /*error*/) {
        ++static_cast<CLibraryErrors*>(self)->m_count;
    }
    int m_count = 0;
};

using CDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

CDocument Memory(const std::string& xml) {
    return {xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, 0),
            &xmlFreeDoc};
}

TEST_F(DimmTableLifetime, BeginsWithOneEntryAndNoModule) {
    DimmTable table;
    const Parser parser(m_first.c_str(), &table);
    EXPECT_EQ(table.num_Entries, 1U);
    EXPECT_THAT(table.entry, IsEmpty());
    EXPECT_EQ(parser.getDimmTable(), &table);
}

TEST_F(DimmTableLifetime, ReadsTheFileWhenItIsAskedTo) {
    const std::string late = (m_folder / "late.xml").string();
    DimmTable table;
    Parser parser(late.c_str(), &table);
    Write("late.xml", OneModule("PN-LATE", "10"));
    parser.parse();
    EXPECT_STREQ(table.entry.at(0).PartNumText(), "PN-LATE");
}

TEST_F(DimmTableLifetime, LeavesNoModuleWhenItFails) {
    for (const std::string& file : {m_broken, m_empty, (m_folder / "missing.xml").string()}) {
        EXPECT_NE(FailureOfFile(file), std::nullopt);
        EXPECT_THAT(m_table.entry, IsEmpty());
    }
}

TEST_F(DimmTableLifetime, LeavesATableThatOutlivesItsParserAndItsFile) {
    DimmTable table;
    {
        Parser parser(m_first.c_str(), &table);
        parser.parse();
    }
    std::filesystem::remove(m_first);
    FailureOfFile(m_second);
    EXPECT_STREQ(table.entry.at(0).partNum.get(), "PN-FIRST");
    EXPECT_THAT(table.entry.at(0).Register_Array.reg_offset, ElementsAre(0x10));
}

TEST_F(DimmTableLifetime, LeavesATableThatCanBeMoved) {
    Parse(OneModule("PN-MOVED", "10"));
    const DimmTable moved = std::move(m_table);
    EXPECT_EQ(moved.num_Entries, 1U);
    ASSERT_THAT(moved.entry, SizeIs(2));
    EXPECT_STREQ(moved.entry[0].PartNumText(), "PN-MOVED");
    EXPECT_THAT(moved.entry[1].partNum, IsNull());
}

TEST_F(DimmTableLifetime, MayEndUnused) {
    DimmTable table;
    for (int i = 0; i < 100; ++i) {
        const Parser parser(m_first.c_str(), &table);
    }
    EXPECT_THAT(table.entry, IsEmpty());
}

TEST_F(DimmTableLifetime, MayBeginAgainAThousandTimes) {
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(FailureOfFile(m_first), std::nullopt);
        ASSERT_STREQ(PartNum(0), "PN-FIRST");
        ASSERT_EQ(FailureOfFile(m_broken), NO_XML_FILE_FOUND);
        ASSERT_EQ(FailureOfFile(m_empty), XML_MISSING_TAGS);
        m_log.Clear();
    }
}

TEST_F(DimmTableLifetime, RunsParsersInterleaved) {
    DimmTable first_table;
    DimmTable second_table;
    DimmTable broken_table;
    auto first = std::make_unique<Parser>(m_first.c_str(), &first_table);
    auto second = std::make_unique<Parser>(m_second.c_str(), &second_table);
    auto broken = std::make_unique<Parser>(m_broken.c_str(), &broken_table);
    const Texts first_dump = first->parse();
    EXPECT_THROW(broken->parse(), Xml_Exceptions);
    broken.reset();
    first.reset();
    const Texts second_dump = second->parse();
    second.reset();
    EXPECT_STREQ(first_table.entry.at(0).PartNumText(), "PN-FIRST");
    EXPECT_STREQ(second_table.entry.at(0).PartNumText(), "PN-SECOND");
    EXPECT_THAT(second_table.entry.at(0).Register_Array.reg_offset, ElementsAre(0x20));
    EXPECT_THAT(first_dump, testing::Contains("\noffset =  0x00000010\nvalue =  0x00000005"));
    EXPECT_THAT(second_dump, testing::Contains("\noffset =  0x00000020\nvalue =  0x00000005"));
}

TEST_F(DimmTableLifetime, LeavesDocumentsOfOthersAlone) {
    const CDocument before = Memory("<t>before</t>");
    {
        DimmTable table;
        Parser parser(m_first.c_str(), &table);
        parser.parse();
    }
    FailureOfFile(m_broken);
    const CDocument after = Memory("<t>after</t>");
    ASSERT_NE(before, nullptr);
    ASSERT_NE(after, nullptr);
    EXPECT_STREQ(
        reinterpret_cast<const char*>(xmlDocGetRootElement(before.get())->children->content),
        "before");
    EXPECT_STREQ(
        reinterpret_cast<const char*>(xmlDocGetRootElement(after.get())->children->content),
        "after");
}

TEST_F(DimmTableLifetime, LeavesTheErrorsOfOthersToThem) {
    const CLibraryErrors errors;
    EXPECT_EQ(FailureOfFile(m_broken), NO_XML_FILE_FOUND);
    EXPECT_EQ(errors.Count(), 0);
    EXPECT_EQ(Memory("<broken>"), nullptr);
    EXPECT_EQ(errors.Count(), 1);
}

TEST(DimmTableExceptions, HaveTheirNumbers) {
    EXPECT_EQ(NO_XML_FILE_FOUND, 0);
    EXPECT_EQ(XML_FORMAT_ERROR, 1);
    EXPECT_EQ(XML_MISSING_TAGS, 2);
    EXPECT_EQ(XML_NO_TAGS, 3);
}

TEST(DimmTableExceptions, SayWhatAStepFound) {
    std::string text = "no text behind \"value\"";
    const ParserException exception(text.c_str(), static_cast<uint32_t>(text.size()));
    text.assign(text.size(), 'x');
    EXPECT_STREQ(exception.what(), "no text behind \"value\"");
    EXPECT_STREQ(ParserException("no text", 2).what(), "no");
    EXPECT_STREQ(ParserException("", 0).what(), "");
}

}  // namespace
