#include "host/c_initializer.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "host/hex_dump_row.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

constexpr std::string_view BLANKS = " \t";

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// In C a number without 0x is decimal or octal, and is not taken for what it is elsewhere.
void CheckPrefixes(std::string_view row) {
    while (!row.empty()) {
        const std::string_view word = row.substr(0, row.find_first_of(" \t,"));
        row.remove_prefix(std::min(word.size() + 1, row.size()));
        const bool has_prefix = word.starts_with("0x") || word.starts_with("0X");
        const std::string_view digits = has_prefix ? word.substr(2) : std::string_view();
        const bool is_byte =
            (digits.size() == 1 || digits.size() == 2) &&
            digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
        if (!word.empty() && !is_byte) {
            throw CUsageError("\"" + Printable(word) +
                              "\": expected a byte as 0x92, as between braces");
        }
    }
}

// The number of "unsigned int spd_len = 256;".
std::optional<size_t> LengthOf(std::string_view row) {
    const size_t sign = row.find('=');
    if (sign == row.npos || !row.ends_with(';') || !IsLetter(row.front())) {
        return std::nullopt;
    }
    row.remove_suffix(1);
    const std::string_view digits = Trimmed(row.substr(sign + 1));
    size_t length = 0;
    const auto [stop, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), length);
    const bool is_number = error == std::errc() && stop == digits.data() + digits.size();
    return is_number ? std::optional(length) : std::nullopt;
}

}  // namespace

bool BeginsInitializer(std::string_view row) {
    const size_t brace = row.find('{');
    const std::string_view before = Trimmed(row.substr(0, brace));
    return brace != row.npos &&
           (before.empty() || (IsLetter(before.front()) && before.ends_with('=')));
}

std::vector<uint8_t> CInitializer::BytesOf(std::string_view row) {
    if (m_place == EPlace::BEHIND) {
        CheckBehind(row);
        return {};
    }
    if (m_place == EPlace::BEFORE) {
        row.remove_prefix(row.find('{') + 1);
        m_place = EPlace::BETWEEN;
    }
    const size_t end = row.find('}');
    const std::string_view between = Trimmed(row.substr(0, end));
    CheckPrefixes(between);
    std::vector<uint8_t> bytes;
    if (!between.empty()) {
        bytes = ParseRow(EDumpStyle::LIST, between).bytes;
    }
    m_count += bytes.size();
    if (end != row.npos) {
        m_place = EPlace::BEHIND;
        CheckBehind(row.substr(end + 1));
    }
    return bytes;
}

void CInitializer::CheckBehind(std::string_view row) const {
    row = Trimmed(row);
    if (row.empty() || row == ";") {
        return;
    }
    const std::optional<size_t> length = LengthOf(row);
    if (!length.has_value()) {
        throw CUsageError("expected nothing behind the bytes but their length");
    }
    if (*length != m_count) {
        throw CUsageError("a length of " + std::to_string(*length) + ", but " +
                          std::to_string(m_count) + " bytes stand between the braces");
    }
}
