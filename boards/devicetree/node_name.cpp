#include "boards/devicetree/node_name.h"

#include <algorithm>
#include <cctype>

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

std::string UniqueName(const std::string& name,
                       const std::function<bool(const std::string&)>& taken) {
    std::string unique = name;
    for (unsigned int number = 2; taken(unique); ++number) {
        unique = name + "-" + std::to_string(number);
    }
    return unique;
}
