#include "host/shell/screen_text.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace {

// Takes the first character off a text that is not empty, and what it is; L'\0'
// for bytes that are none.
std::string_view TakeCharacter(std::string_view& text, wchar_t& character) {
    std::mbstate_t state{};
    size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
    if (length == 0 || length > text.size()) {
        character = L'\0';
        length = 1;
    }
    const std::string_view bytes = text.substr(0, length);
    text.remove_prefix(length);
    return bytes;
}

size_t WidthOf(wchar_t character) {
    const int width = ::wcwidth(character);
    return width > 0 ? static_cast<size_t>(width) : 0;
}

}  // namespace

std::string OnOneRow(std::string_view text) {
    std::string row;
    while (!text.empty()) {
        wchar_t character = L'\0';
        const std::string_view bytes = TakeCharacter(text, character);
        if (character == L'\t') {
            row += ' ';
        } else if (character != L'\0' && std::iswprint(static_cast<wint_t>(character)) != 0) {
            row += bytes;
        }
    }
    return row;
}

size_t ColumnsOf(std::string_view text) {
    size_t columns = 0;
    while (!text.empty()) {
        wchar_t character = L'\0';
        TakeCharacter(text, character);
        columns += WidthOf(character);
    }
    return columns;
}

std::string CutToColumns(std::string_view text, size_t columns) {
    std::string_view rest = text;
    size_t used = 0;
    while (!rest.empty()) {
        const size_t at = text.size() - rest.size();
        wchar_t character = L'\0';
        TakeCharacter(rest, character);
        used += WidthOf(character);
        if (used > columns) {
            return std::string(text.substr(0, at));
        }
    }
    return std::string(text);
}

std::string Shortened(std::string_view text, size_t columns) {
    static constexpr std::string_view DOTS = "...";
    return ColumnsOf(text) <= columns
               ? std::string(text)
               : CutToColumns(text, columns - std::min(columns, DOTS.size())) + std::string(DOTS);
}
