// Lower case, for texts whose hexadecimal digits may be of either case.
#pragma once

#include <algorithm>
#include <cctype>
#include <string>

inline std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}
