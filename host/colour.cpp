#include "host/colour.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* RED = "\x1b[31m";
constexpr const char* YELLOW = "\x1b[33m";
constexpr const char* RESET = "\x1b[0m";

}  // namespace

bool IsScreen(std::FILE* stream) {
    const char* type = std::getenv("TERM");
    return type != nullptr && std::strcmp(type, "dumb") != 0 && ::isatty(::fileno(stream)) != 0;
}

bool ShowsColours(std::FILE* stream) {
    const char* no_colour = std::getenv("NO_COLOR");
    return (no_colour == nullptr || *no_colour == '\0') && IsScreen(stream);
}

std::string Coloured(std::string_view lines, EColour colour) {
    if (colour == EColour::NONE) {
        return std::string(lines);
    }
    std::string coloured;
    while (!lines.empty()) {
        const size_t end = std::min(lines.find('\n'), lines.size());
        if (end != 0) {
            coloured += colour == EColour::RED ? RED : YELLOW;
            coloured += lines.substr(0, end);
            coloured += RESET;
        }
        if (end != lines.size()) {
            coloured += '\n';
        }
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    return coloured;
}
