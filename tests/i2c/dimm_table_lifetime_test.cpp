// What lives how long: parsers beside one another, on one thread and on two,
// and tables that outlive the parser that filled them.
#include <libxml/parser.h>

#include <filesystem>
#include <memory>
#include <thread>

#include "tests/i2c/dimm_table_test.h"
#include "tests/support/gate.h"

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

TEST_F(DimmTableLifetime, RunsOnTwoThreads) {
    constexpr int RUNS = 200;
    const auto run = [this](const std::string& file, const std::string& part_num, int& good) {
        for (int i = 0; i < RUNS; ++i) {
            DimmTable table;
            Parser(file.c_str(), &table).parse();
            good += table.entry.at(0).PartNumText() == part_num ? 1 : 0;
            for (const std::string& bad : {m_broken, m_empty}) {
                try {
                    DimmTable unfilled;
                    Parser(bad.c_str(), &unfilled).parse();
                } catch (Xml_Exceptions failure) {
                    good += failure == (bad == m_broken ? NO_XML_FILE_FOUND : XML_MISSING_TAGS);
                }
            }
        }
    };
    int first_good = 0;
    int second_good = 0;
    CGate start;
    std::thread first([&] {
        start.Await();
        run(m_first, "PN-FIRST", first_good);
    });
    std::thread second([&] {
        start.Await();
        run(m_second, "PN-SECOND", second_good);
    });
    start.Open();
    first.join();
    second.join();
    EXPECT_EQ(first_good, 3 * RUNS);
    EXPECT_EQ(second_good, 3 * RUNS);
}

TEST_F(DimmTableLifetime, HandsAParserFromThreadToThread) {
    DimmTable table;
    std::unique_ptr<Parser> parser;
    std::thread([&] { parser = std::make_unique<Parser>(m_first.c_str(), &table); }).join();
    std::thread([&] { parser->parse(); }).join();
    std::thread([&] { parser.reset(); }).join();
    EXPECT_STREQ(table.entry.at(0).PartNumText(), "PN-FIRST");
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
