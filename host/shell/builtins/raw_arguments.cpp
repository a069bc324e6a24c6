#include "host/shell/builtins/raw_arguments.h"

#include "host/printable.h"
#include "host/usage_error.h"

CRawArguments::CRawArguments(const std::string& builtin, const std::vector<std::string>& words,
                             const std::string& option, size_t min_count, size_t max_count) {
    for (const std::string& word : words) {
        if (word == option) {
            m_has_option = true;
        } else if (word.starts_with("--")) {
            std::string text = builtin + ": there is no option ";
            text += Printable(word) + ", only " + option;
            throw CUsageError(text);
        } else {
            m_words.push_back(word);
        }
    }
    if (m_words.size() < min_count || m_words.size() > max_count) {
        const std::string amount = m_words.size() < min_count ? "few" : "many";
        throw CUsageError(builtin + ": too " + amount + " arguments; try help " + builtin);
    }
}
