#include "host/shell/builtins/listing_options.h"

#include "host/printable.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/number.h"
#include "host/usage_error.h"

namespace {

constexpr uint64_t MOST_LEVELS = 99;

[[noreturn]] void Refuse(const std::string& builtin, const std::string& error) {
    throw CUsageError(builtin + ": " + error + "\n" + UsageOf(*FindBuiltin(builtin)));
}

uint64_t ParseLevels(const std::string& builtin, const std::string& word) {
    try {
        return ParseUnsigned(word, MOST_LEVELS, "0 to " + std::to_string(MOST_LEVELS));
    } catch (const CUsageError& e) {
        Refuse(builtin, std::string("-d: ") + e.what());
    }
}

}  // namespace

CListingOptions CListingOptions::Of(const std::string& builtin,
                                    const std::vector<std::string>& words,
                                    const std::string& letters) {
    CListingOptions options;
    bool has_node = false;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (word->size() < 2 || word->front() != '-') {
            if (has_node) {
                Refuse(builtin, "too many arguments");
            }
            options.node = *word;
            has_node = true;
            continue;
        }
        bool wants_levels = false;
        for (const char letter : word->substr(1)) {
            if (letters.find(letter) == std::string::npos) {
                Refuse(builtin, "there is no option " + Printable(*word));
            }
            options.commands |= letter == 'a';
            options.details |= letter == 'l';
            wants_levels |= letter == 'd';
        }
        if (wants_levels) {
            if (++word == words.end()) {
                Refuse(builtin, "-d needs a number of levels, as in -d 2");
            }
            options.levels = ParseLevels(builtin, *word);
        }
    }
    return options;
}
