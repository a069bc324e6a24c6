#include "host/shell/near_names.h"

#include <algorithm>
#include <cctype>

#include "host/printable.h"

namespace {

constexpr size_t MOST_NAMES = 3;
// From this length on a word may differ in two letters.
constexpr size_t LONG_WORD = 6;

std::string LowerCase(const std::string& text) {
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

size_t Tolerance(const std::string& word) {
    if (word.size() < 2) {
        return 0;
    }
    return word.size() < LONG_WORD ? 1 : 2;
}

// How many letters have to be put in, taken out, replaced or swapped with their
// neighbour to make `a` into `b`, each letter at most once.
size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<size_t> before_last(b.size() + 1);
    std::vector<size_t> last(b.size() + 1);
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        before_last.swap(last);
        last.swap(row);
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before_last[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

}  // namespace

std::vector<std::string> NearNames(const std::string& word, const std::vector<std::string>& names) {
    const std::string wanted = LowerCase(word);
    const size_t tolerance = Tolerance(wanted);
    std::vector<std::pair<size_t, std::string>> near;
    for (const std::string& name : names) {
        const std::string lower = LowerCase(name);
        const size_t difference =
            std::max(name.size(), wanted.size()) - std::min(name.size(), wanted.size());
        const size_t distance = difference > tolerance ? difference : EditDistance(wanted, lower);
        if (distance <= tolerance) {
            near.emplace_back(distance, name);
        } else if (!wanted.empty() && lower.starts_with(wanted)) {
            near.emplace_back(tolerance + 1, name);
        }
    }
    // Among names that are equally near their order tells more than the alphabet.
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> nearest;
    for (const auto& [distance, name] : near) {
        if (nearest.size() < MOST_NAMES && std::count(nearest.begin(), nearest.end(), name) == 0) {
            nearest.push_back(name);
        }
    }
    return nearest;
}

std::string DidYouMean(const std::string& word, const std::vector<std::string>& names) {
    const std::vector<std::string> near = NearNames(word, names);
    std::string text;
    for (size_t i = 0; i < near.size(); ++i) {
        const char* separator = i + 1 == near.size() ? " or " : ", ";
        text += (i == 0 ? "did you mean " : separator) + Printable(near[i]);
    }
    return text.empty() ? text : text + "?";
}
