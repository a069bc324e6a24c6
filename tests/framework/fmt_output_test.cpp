#include "framework/fmt_output.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Takes a given number of characters and no more.
class CNarrowSink : public IFmtOutput {
  public:
    explicit CNarrowSink(size_t room) : m_room(room) {}
    bool putCh(char c) override {
        ++m_offered;
        if (m_taken.size() == m_room) {
            return false;
        }
        m_taken += c;
        return true;
    }
    bool flush() override { return true; }

    const std::string& Taken() const { return m_taken; }
    size_t Offered() const { return m_offered; }

  private:
    const size_t m_room;
    size_t m_offered = 0;
    std::string m_taken;
};

TEST(FmtOutput, FormatsAsTheCLibraryDoes) {
    CFmtString out;
    out.printf("%s:%d %u 0x%04X %2x|%-4s|%c%%|%llu|%zu", "file.cpp", -12, 34U, 0xABU, 0x5U, "ab",
               'x', 18446744073709551615ULL, sizeof(char));
    EXPECT_STREQ(out.c_str(), "file.cpp:-12 34 0x00AB  5|ab  |x%|18446744073709551615|1");
}

TEST(FmtOutput, ReturnsTheNumberOfCharacters) {
    CFmtString out;
    EXPECT_EQ(out.printf("%s-%d", "abc", 10), 6);
    EXPECT_EQ(out.printf("%s", ""), 0);
    EXPECT_EQ(out.puts("four"), 4);
    EXPECT_EQ(out.puts(""), 0);
}

TEST(FmtOutput, OffersEveryCharacterOnceAndInOrder) {
    CNarrowSink sink(100);
    EXPECT_EQ(sink.printf("%d,%s", 42, "yes"), 6);
    EXPECT_EQ(sink.Taken(), "42,yes");
    EXPECT_EQ(sink.Offered(), 6U);
}

TEST(FmtOutput, StopsAtASinkThatTakesNoMore) {
    CNarrowSink sink(4);
    EXPECT_EQ(sink.printf("%s", "abcdefgh"), 4);
    EXPECT_EQ(sink.Taken(), "abcd");
}

TEST(FmtOutput, PutsStopsAtASinkThatTakesNoMore) {
    CNarrowSink sink(3);
    EXPECT_EQ(sink.puts("abcdefgh"), 3);
    EXPECT_EQ(sink.Taken(), "abc");
}

TEST(FmtOutput, FormatsTextsOfAnyLengthWhole) {
    for (const size_t length : {127U, 128U, 255U, 256U, 511U, 512U, 1023U, 1024U, 4096U, 100000U}) {
        const std::string text(length, 'z');
        CFmtString out;
        EXPECT_EQ(out.printf("<%s>", text.c_str()), static_cast<int>(length + 2));
        EXPECT_EQ(out.c_str(), "<" + text + ">");
    }
}

TEST(FmtOutput, TakesAZeroCharacterAsAnyOther) {
    CFmtString out;
    EXPECT_EQ(out.printf("a%cb", '\0'), 3);
    EXPECT_EQ(out.length(), 3U);
}

TEST(FmtOutput, TellsOfAFormatThatTheCLibraryRefuses) {
    CFmtString out;
    // The C locale has no bytes for this character.
    EXPECT_LT(out.printf("%ls", L"\u20AC"), 0);
}

TEST(FmtString, AppendsFromCallToCall) {
    CFmtString out;
    out.printf("%d", 1);
    out.puts("-");
    out.putCh('2');
    EXPECT_STREQ(out.c_str(), "1-2");
    EXPECT_EQ(out.length(), 3U);
}

TEST(FmtString, TakesEveryCharacterAndEveryFlush) {
    CFmtString out;
    EXPECT_TRUE(out.putCh('a'));
    EXPECT_TRUE(out.flush());
    EXPECT_STREQ(out.c_str(), "a");
}

TEST(FmtString, IsEmptyAtFirstAndAfterClear) {
    CFmtString out;
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(out.length(), 0U);
    EXPECT_STREQ(out.c_str(), "");
    out.puts("text");
    EXPECT_FALSE(out.empty());
    out.clear();
    EXPECT_TRUE(out.empty());
    EXPECT_STREQ(out.c_str(), "");
}

}  // namespace
