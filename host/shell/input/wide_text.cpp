#include "host/shell/input/wide_text.h"

#include <array>
#include <climits>
#include <cwchar>

std::wstring Widened(std::string_view text) {
    std::wstring wide;
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t character = L'\0';
        size_t used = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (used > text.size()) {
            character = L'?';
            used = 1;
            state = {};
        }
        wide += character;
        text.remove_prefix(used == 0 ? 1 : used);  // 0 is a NUL
    }
    return wide;
}

std::string Narrowed(std::wstring_view text) {
    std::string narrow;
    for (const wchar_t character : text) {
        std::array<char, MB_LEN_MAX> bytes;
        std::mbstate_t state{};
        const size_t size = std::wcrtomb(bytes.data(), character, &state);
        if (size > bytes.size()) {
            narrow += '?';
        } else {
            narrow.append(bytes.data(), size);
        }
    }
    return narrow;
}
