#include "boards/devicetree/node_name.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "boards/devicetree/property_reader.h"

namespace {

constexpr size_t MAX_LENGTH = 64;

bool IsTypeable(char c) {
    // Without the locale's letters.
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("_.@+,-").find(c) != std::string_view::npos;
}

}  // namespace

std::string WantedName(const CDeviceTreeNode& node) {
    const std::optional<std::string> label = ReadString(node, "label");
    return label && !label->empty() ? *label : std::string(node.Name());
}

std::string TypeableName(std::string_view wanted) {
    std::string name(wanted.substr(0, MAX_LENGTH));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !IsTypeable(c); }, '_');
    if (name.find_first_not_of('.') == std::string::npos) {
        name = "_" + name;
    }
    return name;
}

CNumberedName SplitNumber(const std::string& name) {
    const size_t dash = name.find_last_of('-');
    if (dash == std::string::npos || dash == 0) {
        return {name, 0};
    }
    uint32_t number = 0;
    const char* const first = name.data() + dash + 1;
    const char* const last = name.data() + name.size();
    const auto [end, fault] = std::from_chars(first, last, number);
    // The largest number is left out, so that there is always a next one.
    if (fault != std::errc() || number == UINT32_MAX ||
        std::to_string(number) != std::string(first, last)) {
        return {name, 0};
    }
    return {name.substr(0, dash), number};
}
