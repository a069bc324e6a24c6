// The parser of lines: what it accepts can be written anew in any way of quoting
// and means the same, and what it refuses it refuses at a column of the line.
#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>

#include "fuzz/fuzz_target.h"
#include "host/shell/input/command_line.h"
#include "host/shell/input/word_at_cursor.h"
#include "host/usage_error.h"

namespace {

bool AreEqual(const std::vector<CCommand>& a, const std::vector<CCommand>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const CCommand& one, const CCommand& other) {
                          return one.words == other.words && one.background == other.background &&
                                 one.after_success == other.after_success;
                      });
}

void RequireColumnIn(std::string_view line, std::string_view error) {
    constexpr std::string_view COLUMN = "at column ";
    const size_t found = error.rfind(COLUMN);
    Require(found != std::string_view::npos, "an error names a column");
    const std::string_view digits = error.substr(found + COLUMN.size());
    size_t column = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), column);
    Require(parsed.ec == std::errc(), "the column is a number");
    Require(column >= 1 && column <= line.size(), "the column lies in the line");
}

std::optional<std::vector<CCommand>> Parsed(std::string_view line) {
    try {
        return ParseLine(line);
    } catch (const CUsageError& e) {
        RequireColumnIn(line, e.what());
        return std::nullopt;
    }
}

// Every byte by its number.
std::string Numbered(const std::string& word) {
    constexpr const char* DIGITS = "0123456789abcdef";
    std::string text = "\"";
    for (const char c : word) {
        const auto byte = static_cast<unsigned char>(c);
        text += std::string("\\x") + DIGITS[byte / 16] + DIGITS[byte % 16];
    }
    return text + "\"";
}

std::string Written(const std::vector<CCommand>& commands,
                    const std::function<std::string(const std::string&)>& quoted) {
    std::string line;
    for (const CCommand& command : commands) {
        line += command.after_success ? "&&" : "";
        for (const std::string& word : command.words) {
            line += " " + quoted(word);
        }
        const bool is_last = &command == &commands.back();
        const bool and_follows = !is_last && (&command)[1].after_success;
        if (command.background) {
            line += "&";
        } else if (!and_follows) {
            line += ";";
        }
    }
    return line;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view line = TextOf(data, size);
    const auto commands = Parsed(line);
    if (!commands.has_value()) {
        return 0;
    }
    bool background = false;
    for (const CCommand& command : *commands) {
        Require(!command.words.empty(), "a command has a word");
        Require(!command.after_success || (!background && &command != &commands->front()),
                "&& stands behind a command in the foreground");
        background = command.background;
    }

    const auto require_same = [&commands](const std::string& text, const char* what) {
        const auto again = Parsed(text);
        Require(again.has_value() && AreEqual(*again, *commands), what);
    };
    require_same(std::string(line) + "\t#'\\ & ;", "a comment changes nothing");
    require_same(Written(*commands, Numbered), "words as numbers mean the same");
    for (const char quote : {'\0', '\'', '"'}) {
        require_same(Written(*commands,
                             [quote](const std::string& word) {
                                 // Nothing at all is a word only in quotes.
                                 return Quoted(word, word.empty() ? '"' : quote, true);
                             }),
                     "quoted words mean the same");
    }
    return 0;
}
