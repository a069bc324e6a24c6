#include "host/shell/input/word_splitter.h"

#include <gmock/gmock.h>

#include "host/shell/usage_error.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Words(std::string_view line) {
    const CSplitLine split = SplitLine(line);
    EXPECT_FALSE(split.background);
    return split.words;
}

std::string RefusalOf(std::string_view line) {
    try {
        SplitLine(line);
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "accepted";
}

TEST(WordSplitter, SeparatesAtBlanksAndTabs) {
    EXPECT_THAT(Words("  trans \t rd  0x50 "), ElementsAre("trans", "rd", "0x50"));
    EXPECT_THAT(Words(""), IsEmpty());
    EXPECT_THAT(Words(" \t "), IsEmpty());
}

TEST(WordSplitter, KeepsWhatIsQuoted) {
    EXPECT_THAT(Words("a 'b  c' \"d e\" f"), ElementsAre("a", "b  c", "d e", "f"));
    EXPECT_THAT(Words("'' \"\""), ElementsAre("", ""));
    EXPECT_THAT(Words("pre'mid'\"post\""), ElementsAre("premidpost"));
    EXPECT_THAT(Words("'a\\n' '#'"), ElementsAre("a\\n", "#"));
}

TEST(WordSplitter, KnowsEscapes) {
    EXPECT_THAT(Words(R"("\\ \" \' \n\t\r" \x41\x7e a\ b \#x)"),
                ElementsAre("\\ \" ' \n\t\r", "A~", "a b", "#x"));
    EXPECT_THAT(Words(R"("a\0b")"), ElementsAre(std::string("a\0b", 3)));
}

TEST(WordSplitter, EndsAtACommentThatBeginsAWord) {
    EXPECT_THAT(Words("probe # the bus"), ElementsAre("probe"));
    EXPECT_THAT(Words("# nothing"), IsEmpty());
    EXPECT_THAT(Words("a#b"), ElementsAre("a#b"));
}

TEST(WordSplitter, TakesABareAmpersandAtTheEndForTheBackground) {
    for (const char* line : {"check wait &", "check wait&", "check wait & # later"}) {
        const CSplitLine split = SplitLine(line);
        EXPECT_THAT(split.words, ElementsAre("check", "wait")) << line;
        EXPECT_TRUE(split.background) << line;
    }
    EXPECT_THAT(SplitLine("&").words, IsEmpty());
    EXPECT_TRUE(SplitLine("&").background);
}

TEST(WordSplitter, TakesAnyOtherAmpersandAsItStands) {
    EXPECT_THAT(Words("check '&'"), ElementsAre("check", "&"));
    EXPECT_THAT(Words("check R\\&"), ElementsAre("check", "R&"));
    EXPECT_THAT(Words("check & now"), ElementsAre("check", "&", "now"));
    EXPECT_THAT(Words("check \"wait\"'&'"), ElementsAre("check", "wait&"));
}

TEST(WordSplitter, RefusesAnOpenQuoteAndNamesItsColumn) {
    EXPECT_THAT(RefusalOf("a 'b"), HasSubstr("' at column 3 is never closed"));
    EXPECT_THAT(RefusalOf("a \"b\\\""), HasSubstr("\" at column 3 is never closed"));
}

TEST(WordSplitter, RefusesUnknownAndUnfinishedEscapes) {
    for (const char* line : {"\\q", "\\", "\"\\q\"", "\"\\ \""}) {
        EXPECT_THAT(RefusalOf(line), HasSubstr("unknown escape at column")) << line;
    }
    for (const char* line : {"\\x", "\\x4", "\\xg0", "\\x4g"}) {
        EXPECT_THAT(RefusalOf(line), HasSubstr("needs two hexadecimal digits")) << line;
    }
}

TEST(WordSplitter, RefusesBareControlCharacters) {
    EXPECT_EQ(RefusalOf(std::string_view("ab\0c", 4)),
              "control character \\x00 at column 3; write it as an escape, \\xHH");
    EXPECT_THAT(RefusalOf("\x1b[A"), HasSubstr("control character \\x1b at column 1"));
    EXPECT_THAT(RefusalOf("'\x7f'"), HasSubstr("control character \\x7f at column 2"));
}

TEST(WordSplitter, TakesBytesAboveAsciiAsTheyStand) {
    EXPECT_THAT(Words("gr\xc3\xbc\xc3\x9f \xff"), ElementsAre("gr\xc3\xbc\xc3\x9f", "\xff"));
}

}  // namespace
