#include "boards/devicetree/printable_text.h"

#include <algorithm>

namespace {

constexpr size_t MAX_LENGTH = 80;

}  // namespace

std::string PrintableText(std::string_view text) {
    std::string shown(text.substr(0, MAX_LENGTH));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text.size() > MAX_LENGTH ? shown + "..." : shown;
}
