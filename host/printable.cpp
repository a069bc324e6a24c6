#include "host/printable.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Length of the well-formed UTF-8 character at the front of `text`, 0 if there is none.
size_t CharacterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        return lead >= 0x20 && lead != 0x7F ? 1 : 0;
    }
    size_t length = 0;
    uint32_t smallest = 0;
    uint32_t code = 0;
    if ((lead & 0xE0U) == 0xC0U) {
        length = 2;
        smallest = 0x80;
        code = lead & 0x1FU;
    } else if ((lead & 0xF0U) == 0xE0U) {
        length = 3;
        smallest = 0x800;
        code = lead & 0x0FU;
    } else if ((lead & 0xF8U) == 0xF0U) {
        length = 4;
        smallest = 0x10000;
        code = lead & 0x07U;
    }
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) {
            return 0;
        }
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool c1_control = code < 0xA0;
    return code < smallest || code > 0x10FFFF || surrogate || c1_control ? 0 : length;
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        if (const size_t length = CharacterLength(text); length != 0) {
            shown += text.substr(0, length);
            text.remove_prefix(length);
            continue;
        }
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '\n') {
            shown += "\\n";
        } else if (c == '\t') {
            shown += "\\t";
        } else {
            std::array<char, 8> hex{};
            std::snprintf(hex.data(), hex.size(), "\\x%02x", static_cast<unsigned char>(c));
            shown += hex.data();
        }
    }
    return shown;
}
