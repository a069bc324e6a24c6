// Parsers of tables on several threads.
#include <memory>
#include <string>
#include <thread>

#include "tests/i2c/dimm_table_test.h"
#include "tests/support/gate.h"

namespace {

class DimmTableThreads : public CDimmTableTest {
  protected:
    std::string WriteModule(const std::string& file, const std::string& part_num) {
        return Write(file,
                     Document(Header() + Module("1", part_num) + RegisterSet(Pair("10", "5"))))
            .string();
    }
    std::string m_first = WriteModule("first.xml", "PN-FIRST");
    std::string m_second = WriteModule("second.xml", "PN-SECOND");
    std::string m_broken = Write("broken.xml", "<broken>").string();
    std::string m_empty = Write("empty.xml", "<empty/>").string();
};

TEST_F(DimmTableThreads, RunsOnTwoThreads) {
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

TEST_F(DimmTableThreads, HandsAParserFromThreadToThread) {
    DimmTable table;
    std::unique_ptr<Parser> parser;
    std::thread([&] { parser = std::make_unique<Parser>(m_first.c_str(), &table); }).join();
    std::thread([&] { parser->parse(); }).join();
    std::thread([&] { parser.reset(); }).join();
    EXPECT_STREQ(table.entry.at(0).PartNumText(), "PN-FIRST");
}

}  // namespace
