#include "decode/field_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

namespace {

constexpr std::string_view DIGITS = "0123456789abcdef";

bool IsPadding(uint8_t byte) {
    return byte == ' ' || byte == 0x00 || byte == 0xFF;
}

bool IsPrintable(uint8_t byte) {
    return byte >= 0x20 && byte <= 0x7E;
}

void AppendByte(std::string& text, uint8_t byte) {
    text += DIGITS[byte >> 4];
    text += DIGITS[byte & 0xF];
}

}  // namespace

std::string TextOf(std::span<const uint8_t> field) {
    while (!field.empty() && IsPadding(field.back())) {
        field = field.first(field.size() - 1);
    }
    if (field.empty()) {
        return "(none)";
    }
    std::string text;
    for (const uint8_t byte : field) {
        if (IsPrintable(byte)) {
            text += static_cast<char>(byte);
        } else {
            text += "\\x";
            AppendByte(text, byte);
        }
    }
    return text;
}

std::string Hex(uint64_t value, int digits) {
    std::string text;
    for (; value != 0 || digits > 0; value >>= 4, --digits) {
        text.insert(text.begin(), DIGITS[value & 0xF]);
    }
    return "0x" + text;
}

std::string HexBytes(std::span<const uint8_t> bytes, char separator) {
    std::string text;
    for (const uint8_t byte : bytes) {
        if (!text.empty()) {
            text += separator;
        }
        AppendByte(text, byte);
    }
    return text;
}

std::string Fixed(double value, int decimals) {
    if (std::isnan(value)) {
        return "nan";  // whatever its sign
    }
    std::array<char, 400> text;  // the longest double has 309 digits before the point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, decimals);
    const std::string_view digits(text.data(), static_cast<size_t>(end.ptr - text.data()));
    const bool is_zero = digits.find_first_not_of("-0.") == std::string_view::npos;
    return std::string(is_zero && digits.front() == '-' ? digits.substr(1) : digits);
}

std::string Decimal(double value, int decimals) {
    std::string text = Fixed(value, decimals);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') {
            text.pop_back();
        }
    }
    return text;
}

std::string DateOf(std::string_view digits) {
    if (digits.size() != 8 ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return "";
    }
    const auto number = [&digits](size_t at, size_t length) {
        unsigned value = 0;
        std::from_chars(digits.data() + at, digits.data() + at + length, value);
        return value;
    };
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(number(0, 4))),
                                           std::chrono::month(number(4, 2)),
                                           std::chrono::day(number(6, 2))};
    if (!date.ok()) {
        return "";
    }
    return std::string(digits.substr(0, 4)) + "-" + std::string(digits.substr(4, 2)) + "-" +
           std::string(digits.substr(6, 2));
}

std::string CheckText(uint32_t stored, uint32_t calculated, int digits) {
    if (stored == calculated) {
        return Hex(stored, digits) + ", right";
    }
    return Hex(stored, digits) + ", wrong: calculated " + Hex(calculated, digits);
}

std::string Listed(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += text.empty() ? item : ", " + item;
    }
    return text;
}
