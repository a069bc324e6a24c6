// What completion takes for the words before the cursor is what the parser of
// lines makes of them, and what it writes in place of a word reads as that word.
#include <optional>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "host/shell/input/command_line.h"
#include "host/shell/input/word_at_cursor.h"
#include "host/usage_error.h"

namespace {

// The words of the last command, if the line is one.
std::optional<std::vector<std::string>> LastWords(const std::string& line) {
    try {
        const std::vector<CCommand> commands = ParseLine(line);
        return commands.empty() ? std::vector<std::string>() : commands.back().words;
    } catch (const CUsageError&) {
        return std::nullopt;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string line(TextOf(data, size));
    const CWordAtCursor found = WordAtCursor(line, line.size());
    Require(found.begin <= line.size(), "the word begins in the line");
    const std::string head = line.substr(0, found.begin);

    const CWordAtCursor same = WordAtCursor(line + "' x", line.size());
    Require(same.before == found.before && same.word == found.word && same.begin == found.begin &&
                same.quote == found.quote && same.in_comment == found.in_comment,
            "what stands behind the cursor does not count");

    if (!LastWords(head + "x").has_value()) {
        // The parser refuses what stands before the word.
        return 0;
    }
    const auto with = [&found](const std::string& word) {
        std::vector<std::string> words = found.before;
        words.push_back(word);
        return words;
    };
    Require(LastWords(head + "x") == with("x"), "the words before are the parser's");
    if (found.in_comment || found.begin == line.size()) {
        Require(found.word.empty() && found.quote == '\0', "there is no word");
        return 0;
    }
    const std::string closing(found.quote == '\0' ? 0 : 1, found.quote);
    if (const auto words = LastWords(line + closing)) {
        Require(words == with(found.word), "the word is the parser's");
    }
    if (!found.word.empty() || found.quote != '\0') {
        Require(LastWords(head + Quoted(found.word, found.quote, true)) == with(found.word),
                "the word as it is written reads as it is");
    }
    return 0;
}
