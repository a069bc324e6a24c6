#include "boards/devicetree/aliases.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace {

// The number of "i2c3" behind "i2c"; "i2c03" and "i2c-3" have none.
std::optional<uint32_t> NumberBehind(std::string_view kind, std::string_view alias) {
    if (!alias.starts_with(kind)) {
        return std::nullopt;
    }
    const std::string_view digits = alias.substr(kind.size());
    uint32_t number = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (fault != std::errc() || std::to_string(number) != digits) {
        return std::nullopt;
    }
    return number;
}

// The text of the property up to its zero byte.
std::string PathIn(const CDeviceTreeProperty& property) {
    const auto end = std::find(property.value.begin(), property.value.end(), uint8_t{0});
    return {property.value.begin(), end};
}

}  // namespace

CAliases::CAliases(const CDeviceTreeNode& root, std::string_view kind) {
    for (const auto& child : root.Children()) {
        if (child->Name() != "aliases") {
            continue;
        }
        for (const CDeviceTreeProperty& property : child->Properties()) {
            if (const auto number = NumberBehind(kind, property.name)) {
                const auto [entry, fresh] = m_numbers.emplace(PathIn(property), *number);
                entry->second = std::min(entry->second, *number);
                m_first_free = std::max(m_first_free, *number + 1);
            }
        }
    }
}

std::optional<uint32_t> CAliases::NumberOf(const CDeviceTreeNode& node) const {
    const auto found = m_numbers.find(node.Path());
    return found == m_numbers.end() ? std::nullopt : std::optional(found->second);
}
