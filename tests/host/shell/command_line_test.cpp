#include "host/shell/input/command_line.h"

#include <gmock/gmock.h>

#include "host/usage_error.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> Words(std::string_view line) {
    const std::vector<CCommand> commands = ParseLine(line);
    EXPECT_LE(commands.size(), 1U);
    if (commands.empty()) {
        return {};
    }
    EXPECT_FALSE(commands.front().background);
    return commands.front().words;
}

std::string RefusalOf(std::string_view line) {
    try {
        ParseLine(line);
    } catch (const CUsageError& e) {
        return e.what();
    }
    return "accepted";
}

TEST(CommandLine, SeparatesAtBlanksAndTabs) {
    EXPECT_THAT(Words("  trans \t rd  0x50 "), ElementsAre("trans", "rd", "0x50"));
    EXPECT_THAT(Words(""), IsEmpty());
    EXPECT_THAT(Words(" \t "), IsEmpty());
}

TEST(CommandLine, KeepsWhatIsQuoted) {
    EXPECT_THAT(Words("a 'b  c' \"d e\" f"), ElementsAre("a", "b  c", "d e", "f"));
    EXPECT_THAT(Words("'' \"\""), ElementsAre("", ""));
    EXPECT_THAT(Words("pre'mid'\"post\""), ElementsAre("premidpost"));
    EXPECT_THAT(Words("'a\\n' '#'"), ElementsAre("a\\n", "#"));
}

TEST(CommandLine, KnowsEscapes) {
    EXPECT_THAT(Words(R"("\\ \" \' \n\t\r" \x41\x7e a\ b \#x)"),
                ElementsAre("\\ \" ' \n\t\r", "A~", "a b", "#x"));
    EXPECT_THAT(Words(R"("a\0b")"), ElementsAre(std::string("a\0b", 3)));
}

TEST(CommandLine, EndsAtACommentThatBeginsAWord) {
    EXPECT_THAT(Words("probe # the bus"), ElementsAre("probe"));
    EXPECT_THAT(Words("# nothing"), IsEmpty());
    EXPECT_THAT(Words("a#b"), ElementsAre("a#b"));
}

TEST(CommandLine, TakesAnAmpersandForTheBackground) {
    for (const char* line : {"check wait &", "check wait&", "check wait & # later"}) {
        const std::vector<CCommand> commands = ParseLine(line);
        ASSERT_EQ(commands.size(), 1U) << line;
        EXPECT_THAT(commands[0].words, ElementsAre("check", "wait")) << line;
        EXPECT_TRUE(commands[0].background) << line;
    }
}

TEST(CommandLine, TakesQuotedAndEscapedSeparatorsAsTheyStand) {
    EXPECT_THAT(Words("check '&' \";\""), ElementsAre("check", "&", ";"));
    EXPECT_THAT(Words(R"(check R\& \;S)"), ElementsAre("check", "R&", ";S"));
    EXPECT_THAT(Words("check \"wait\"'&&'"), ElementsAre("check", "wait&&"));
    EXPECT_EQ(RefusalOf(R"("\;")").substr(0, 14), "unknown escape");
}

// The commands of a line, each with what it depends on and how it runs.
std::vector<std::string> CommandsOf(std::string_view line) {
    std::vector<std::string> texts;
    for (const CCommand& command : ParseLine(line)) {
        std::string text = command.after_success ? "then" : "";
        for (const std::string& word : command.words) {
            text += (text.empty() ? "" : " ") + word;
        }
        texts.push_back(text + (command.background ? " behind" : ""));
    }
    return texts;
}

TEST(CommandLine, SeparatesCommands) {
    EXPECT_THAT(CommandsOf("a 1; b 2"), ElementsAre("a 1", "b 2"));
    EXPECT_THAT(CommandsOf("a;b;c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(CommandsOf("a && b"), ElementsAre("a", "then b"));
    EXPECT_THAT(CommandsOf("a&&b;c&&d"), ElementsAre("a", "then b", "c", "then d"));
    EXPECT_THAT(CommandsOf("a & b & c"), ElementsAre("a behind", "b behind", "c"));
    EXPECT_THAT(CommandsOf("a && b &"), ElementsAre("a", "then b behind"));
    EXPECT_THAT(CommandsOf("a; # b"), ElementsAre("a"));
    EXPECT_THAT(CommandsOf("a;"), ElementsAre("a"));
}

TEST(CommandLine, RefusesSeparatorsThatLackACommand) {
    EXPECT_EQ(RefusalOf("&"), "& at column 1 needs a command before it");
    EXPECT_EQ(RefusalOf(" ; a"), "; at column 2 needs a command before it");
    EXPECT_EQ(RefusalOf("a ;; b"), "; at column 4 needs a command before it");
    EXPECT_EQ(RefusalOf("a & ; b"), "; at column 5 needs a command before it");
    EXPECT_EQ(RefusalOf("a &&& b"), "& at column 5 needs a command before it");
    EXPECT_EQ(RefusalOf("&& a"), "&& at column 1 needs a command before it");
    EXPECT_EQ(RefusalOf("a && # b"), "&& at column 3 needs a command behind it");
    EXPECT_EQ(RefusalOf("a &&"), "&& at column 3 needs a command behind it");
}

TEST(CommandLine, RefusesAnOpenQuoteAndNamesItsColumn) {
    EXPECT_THAT(RefusalOf("a 'b"), HasSubstr("' at column 3 is never closed"));
    EXPECT_THAT(RefusalOf("a \"b\\\""), HasSubstr("\" at column 3 is never closed"));
}

TEST(CommandLine, RefusesUnknownAndUnfinishedEscapes) {
    for (const char* line : {"\\q", "\\", "\"\\q\"", "\"\\ \""}) {
        EXPECT_THAT(RefusalOf(line), HasSubstr("unknown escape at column")) << line;
    }
    for (const char* line : {"\\x", "\\x4", "\\xg0", "\\x4g"}) {
        EXPECT_THAT(RefusalOf(line), HasSubstr("needs two hexadecimal digits")) << line;
    }
}

TEST(CommandLine, RefusesBareControlCharacters) {
    EXPECT_EQ(RefusalOf(std::string_view("ab\0c", 4)),
              "control character \\x00 at column 3; write it as an escape, \\xHH");
    EXPECT_THAT(RefusalOf("\x1b[A"), HasSubstr("control character \\x1b at column 1"));
    EXPECT_THAT(RefusalOf("'\x7f'"), HasSubstr("control character \\x7f at column 2"));
}

TEST(CommandLine, TakesBytesAboveAsciiAsTheyStand) {
    EXPECT_THAT(Words("gr\xc3\xbc\xc3\x9f \xff"), ElementsAre("gr\xc3\xbc\xc3\x9f", "\xff"));
}

}  // namespace
