#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/shell/input/line_reader.h"

namespace {

class StreamReader : public testing::Test {
  protected:
    void Feed(const std::string& text) {
        std::fwrite(text.data(), 1, text.size(), m_file.get());
        std::rewind(m_file.get());
    }
    ELine Read() { return m_reader.Read("unused> ", line); }

    struct CClose {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, CClose> m_file{std::tmpfile()};
    CStreamReader m_reader{m_file.get()};
    std::string line;
};

TEST_F(StreamReader, ReadsLinesUpToTheEnd) {
    Feed("one\n\ntwo\r\nlast");
    for (const char* expected : {"one", "", "two", "last"}) {
        EXPECT_EQ(Read(), ELine::READ);
        EXPECT_EQ(line, expected);
    }
    EXPECT_EQ(Read(), ELine::END);
}

TEST_F(StreamReader, SkipsAByteOrderMarkAtTheBeginningOnly) {
    Feed("\xEF\xBB\xBFone\n\xEF\xBB\xBFtwo\n");
    EXPECT_EQ(Read(), ELine::READ);
    EXPECT_EQ(line, "one");
    EXPECT_EQ(Read(), ELine::READ);
    EXPECT_EQ(line, "\xEF\xBB\xBFtwo");
}

TEST_F(StreamReader, ReadsAnEmptyStream) {
    EXPECT_EQ(Read(), ELine::END);
}

TEST_F(StreamReader, KeepsZeroBytes) {
    Feed(std::string("a\0b\n", 4));
    EXPECT_EQ(Read(), ELine::READ);
    EXPECT_EQ(line, std::string("a\0b", 3));
}

TEST_F(StreamReader, SkipsALineThatIsTooLongAsAWhole) {
    Feed(std::string(ILineReader::MAX_LINE, 'a') + "\n" +
         std::string(ILineReader::MAX_LINE + 1, 'b') + "\nnext\n");
    EXPECT_EQ(Read(), ELine::READ);
    EXPECT_EQ(line.size(), ILineReader::MAX_LINE);
    EXPECT_EQ(Read(), ELine::TOO_LONG);
    EXPECT_EQ(Read(), ELine::READ);
    EXPECT_EQ(line, "next");
}

TEST_F(StreamReader, ReportsAnUnreadableStream) {
    const std::unique_ptr<std::FILE, CClose> folder(std::fopen("/", "r"));
    ASSERT_NE(folder, nullptr);
    CStreamReader reader(folder.get());
    EXPECT_EQ(reader.Read("", line), ELine::FAILED);
}

}  // namespace
