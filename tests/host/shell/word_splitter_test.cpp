#include "host/shell/word_splitter.h"

#include <gmock/gmock.h>

#include "host/shell/usage_error.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string RefusalOf(std::string_view line) {
    try {
        SplitLine(line);
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "accepted";
}

TEST(WordSplitter, SeparatesAtBlanksAndTabs) {
    EXPECT_THAT(SplitLine("  trans \t rd  0x50 "), ElementsAre("trans", "rd", "0x50"));
    EXPECT_THAT(SplitLine(""), IsEmpty());
    EXPECT_THAT(SplitLine(" \t "), IsEmpty());
}

TEST(WordSplitter, KeepsWhatIsQuoted) {
    EXPECT_THAT(SplitLine("a 'b  c' \"d e\" f"), ElementsAre("a", "b  c", "d e", "f"));
    EXPECT_THAT(SplitLine("'' \"\""), ElementsAre("", ""));
    EXPECT_THAT(SplitLine("pre'mid'\"post\""), ElementsAre("premidpost"));
    EXPECT_THAT(SplitLine("'a\\n' '#'"), ElementsAre("a\\n", "#"));
}

TEST(WordSplitter, KnowsEscapes) {
    EXPECT_THAT(SplitLine(R"("\\ \" \' \n\t\r" \x41\x7e a\ b \#x)"),
                ElementsAre("\\ \" ' \n\t\r", "A~", "a b", "#x"));
    EXPECT_THAT(SplitLine(R"("a\0b")"), ElementsAre(std::string("a\0b", 3)));
}

TEST(WordSplitter, EndsAtACommentThatBeginsAWord) {
    EXPECT_THAT(SplitLine("probe # the bus"), ElementsAre("probe"));
    EXPECT_THAT(SplitLine("# nothing"), IsEmpty());
    EXPECT_THAT(SplitLine("a#b"), ElementsAre("a#b"));
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
    EXPECT_THAT(SplitLine("gr\xc3\xbc\xc3\x9f \xff"), ElementsAre("gr\xc3\xbc\xc3\x9f", "\xff"));
}

}  // namespace
