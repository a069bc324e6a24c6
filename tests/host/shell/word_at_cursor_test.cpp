#include "host/shell/input/word_at_cursor.h"

#include <gmock/gmock.h>

#include "host/shell/input/command_line.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

CWordAtCursor AtEnd(const std::string& line) {
    return WordAtCursor(line, line.size());
}

TEST(WordAtCursor, IsEmptyWhereNoneHasBegun) {
    for (const std::string line : {"", "  ", "\t"}) {
        const CWordAtCursor at = AtEnd(line);
        EXPECT_EQ(at.word, "");
        EXPECT_EQ(at.begin, line.size());
        EXPECT_THAT(at.before, IsEmpty());
    }
}

TEST(WordAtCursor, StandsBehindTheWordsOfItsCommand) {
    const CWordAtCursor at = AtEnd("  peek /dev/list 1..");
    EXPECT_THAT(at.before, ElementsAre("peek", "/dev/list"));
    EXPECT_EQ(at.word, "1..");
    EXPECT_EQ(at.begin, 17U);
}

TEST(WordAtCursor, BeginsAnewBehindABlank) {
    const CWordAtCursor at = AtEnd("peek ");
    EXPECT_THAT(at.before, ElementsAre("peek"));
    EXPECT_EQ(at.word, "");
    EXPECT_EQ(at.begin, 5U);
}

TEST(WordAtCursor, BeginsACommandBehindEachSeparator) {
    for (const std::string separator : {";", "&&", "&"}) {
        const CWordAtCursor next = AtEnd("ls dev" + separator + "pe");
        EXPECT_THAT(next.before, IsEmpty()) << separator;
        EXPECT_EQ(next.word, "pe") << separator;
        EXPECT_EQ(next.begin, 6 + separator.size()) << separator;
        EXPECT_THAT(AtEnd("ls dev " + separator + " peek ").before, ElementsAre("peek"));
    }
}

TEST(WordAtCursor, DoesNotSeeWhatStandsBehindTheCursor) {
    const CWordAtCursor at = WordAtCursor("peek name 'x", 7);
    EXPECT_THAT(at.before, ElementsAre("peek"));
    EXPECT_EQ(at.word, "na");
}

TEST(WordAtCursor, IsFreeOfQuotesAndEscapes) {
    EXPECT_EQ(AtEnd(R"(a\ b\;\&\#c\\)").word, R"(a b;&#c\)");
    EXPECT_EQ(AtEnd(R"(\x41\t\n\r\")").word, "A\t\n\r\"");
    EXPECT_EQ(AtEnd(R"(a'b c'"d e")").word, "ab cd e");
    EXPECT_EQ(AtEnd(R"('a\x41')").word, R"(a\x41)");
    EXPECT_EQ(AtEnd(R"(\0)").word, std::string(1, '\0'));
}

TEST(WordAtCursor, KnowsTheOpenQuote) {
    const CWordAtCursor single = AtEnd("import 'my fi");
    EXPECT_EQ(single.quote, '\'');
    EXPECT_EQ(single.word, "my fi");
    EXPECT_EQ(single.begin, 7U);
    EXPECT_EQ(AtEnd("import \"my; fi").quote, '"');
    EXPECT_EQ(AtEnd("import \"my; fi").word, "my; fi");
    EXPECT_EQ(AtEnd("import 'my fi'").quote, '\0');
}

TEST(WordAtCursor, TakesBrokenEscapesAsTheyStand) {
    EXPECT_EQ(AtEnd("a\\").word, "a\\");
    EXPECT_EQ(AtEnd("\\q").word, "q");
    EXPECT_EQ(AtEnd("\\x4").word, "x4");
    EXPECT_EQ(AtEnd("\\xzz").word, "xzz");
}

TEST(WordAtCursor, IsNoneInAComment) {
    EXPECT_TRUE(AtEnd("ls # de").in_comment);
    EXPECT_TRUE(AtEnd("#").in_comment);
    EXPECT_FALSE(AtEnd("ls a#b").in_comment);
    EXPECT_FALSE(AtEnd("ls '# de").in_comment);
}

TEST(QuotedWord, IsReadBackAsItWas) {
    const std::vector<std::string> words = {"plain",
                                            "a b",
                                            "a;b&c",
                                            "#a",
                                            "a#b",
                                            R"(q"u'o\te)",
                                            "tab\tnew\nline",
                                            "gr\u00fc\u00df",
                                            "\xff\xfe stray",
                                            std::string("nul\0x", 5),
                                            "",
                                            "\x7f\x1b[A"};
    for (const std::string& word : words) {
        for (const char quote : {'\0', '"', '\''}) {
            const std::string typed = "do " + Quoted(word, quote, true) + "x";
            const std::vector<CCommand> commands = ParseLine(typed);
            ASSERT_EQ(commands.size(), 1U) << typed;
            EXPECT_THAT(commands[0].words, ElementsAre("do", word + "x")) << typed;
        }
    }
}

TEST(QuotedWord, KeepsTheQuoteThatWasOpened) {
    EXPECT_EQ(Quoted("a b", '\'', false), "'a b");
    EXPECT_EQ(Quoted("a b", '"', false), "\"a b");
    EXPECT_EQ(Quoted("a b", '\'', true), "'a b'");
    EXPECT_EQ(Quoted("a b", '"', true), "\"a b\"");
    EXPECT_EQ(Quoted("a b", '\0', true), "a\\ b");
    // '...' knows no escapes.
    EXPECT_EQ(Quoted("it's", '\'', true), "it\\'s");
}

}  // namespace
