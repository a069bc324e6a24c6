#include "host/shell/number.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>
#include <system_error>

#include "host/printable.h"
#include "host/usage_error.h"

namespace {

std::string Quoted(const std::string& word) {
    return "\"" + Printable(word) + "\"";
}

// Takes the prefix of a base other than ten off.
int TakeBase(std::string_view& digits) {
    if (digits.size() < 2 || digits.front() != '0') {
        return 10;
    }
    int base = 10;
    switch (std::tolower(static_cast<unsigned char>(digits[1]))) {
        case 'x':
            base = 16;
            break;
        case 'o':
            base = 8;
            break;
        case 'b':
            base = 2;
            break;
        default:
            return base;
    }
    digits.remove_prefix(2);
    return base;
}

bool IsDigitOrSeparator(char c, int base) {
    int value = 0;
    return c == '_' || std::from_chars(&c, &c + 1, value, base).ec == std::errc();
}

// C reads a leading zero as octal, most people read it as nothing.
void RefuseLeadingZero(const std::string& word, bool negative, std::string_view digits) {
    const size_t begin = digits.find_first_not_of("0_");
    if (digits.front() != '0' || begin == std::string_view::npos) {
        return;
    }
    const std::string sign = negative ? "-" : "";
    const std::string rest(digits.substr(begin));
    if (rest.find_first_of("89") != std::string::npos) {
        throw CUsageError(Quoted(word) + " has a leading zero; write " + sign + rest);
    }
    throw CUsageError(Quoted(word) + " may be octal or decimal; write " + sign + "0o" + rest +
                      " or " + sign + rest);
}

}  // namespace

CNumber ParseNumber(const std::string& word, const std::string& range) {
    CNumber number;
    number.negative = word.starts_with('-');
    std::string_view digits = std::string_view(word).substr(number.negative ? 1 : 0);
    const int base = TakeBase(digits);
    const auto fits = [base](char c) { return IsDigitOrSeparator(c, base); };
    if (digits.find_first_not_of('_') == std::string_view::npos ||
        !std::all_of(digits.begin(), digits.end(), fits)) {
        throw CUsageError(Quoted(word) + " is not a number; " + range +
                          " fits (decimal, 0x, 0o or 0b)");
    }
    if (digits.front() == '_' || digits.back() == '_' ||
        digits.find("__") != std::string_view::npos) {
        throw CUsageError(Quoted(word) + ": a _ in a number stands between two digits");
    }
    if (base == 10) {
        RefuseLeadingZero(word, number.negative, digits);
    }
    std::string bare(digits);
    std::erase(bare, '_');
    const auto parsed =
        std::from_chars(bare.data(), bare.data() + bare.size(), number.magnitude, base);
    if (parsed.ec != std::errc()) {
        throw CUsageError(word + " is out of range, " + range + " fits");
    }
    return number;
}

uint64_t ParseUnsigned(const std::string& word, uint64_t max, const std::string& range) {
    const CNumber number = ParseNumber(word, range);
    if (number.magnitude > max || (number.negative && number.magnitude != 0)) {
        throw CUsageError(word + " is out of range, " + range + " fits");
    }
    return number.magnitude;
}
