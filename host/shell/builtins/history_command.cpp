#include "host/shell/builtins/history_command.h"

#include <algorithm>
#include <charconv>

#include "host/shell/input/history.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

constexpr size_t USUAL_COUNT = 20;

bool IsCount(const std::string& word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
}

size_t CountIn(const std::string& word) {
    size_t count = CHistory::KEPT;  // where it is too large a number
    std::from_chars(word.data(), word.data() + word.size(), count);
    return count;
}

}  // namespace

EExitStatus ListHistory(CShell& shell, const std::vector<std::string>& arguments) {
    if (shell.History() == nullptr) {
        throw CUsageError("there is no history: it is kept of lines that are typed at the prompt");
    }
    const std::vector<std::string> lines = shell.History()->Lines();
    std::string text;
    size_t count = USUAL_COUNT;
    if (!arguments.empty() && IsCount(arguments.front())) {
        count = CountIn(arguments.front());
    } else if (!arguments.empty()) {
        text = arguments.front();
        count = lines.size();
    }
    for (size_t i = lines.size() - std::min(count, lines.size()); i < lines.size(); ++i) {
        if (lines[i].find(text) != std::string::npos) {
            const std::string number = std::to_string(i + 1);
            shell.Print(std::string(5 - std::min<size_t>(number.size(), 5), ' ') + number + "  " +
                        lines[i] + "\n");
        }
    }
    return EXIT_PASSED;
}
