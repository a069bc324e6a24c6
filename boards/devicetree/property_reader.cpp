#include "boards/devicetree/property_reader.h"

#include <algorithm>

#include "boards/devicetree/printable_text.h"
#include "framework/diag_exception.h"

namespace {

uint32_t Cell(std::span<const uint8_t> value, size_t index) {
    uint32_t cell = 0;
    for (const uint8_t byte : value.subspan(index * CELL_SIZE, CELL_SIZE)) {
        cell = cell << 8 | byte;
    }
    return cell;
}

[[noreturn]] void Refuse(const CDeviceTreeNode& node, std::string_view name,
                         const std::string& found, const char* right) {
    throw CDiagException("%s: property \"%s\" %s, should be %s", node.Path().c_str(),
                         PrintableText(name).c_str(), found.c_str(), right);
}

[[noreturn]] void RefuseLength(const CDeviceTreeNode& node, const CDeviceTreeProperty& property,
                               const char* right) {
    Refuse(node, property.name, "has " + std::to_string(property.value.size()) + " bytes", right);
}

}  // namespace

bool ReadBool(const CDeviceTreeNode& node, std::string_view name) {
    return node.Find(name) != nullptr;
}

std::optional<uint32_t> ReadU32(const CDeviceTreeNode& node, std::string_view name) {
    const CDeviceTreeProperty* property = node.Find(name);
    if (property == nullptr) {
        return std::nullopt;
    }
    if (property->value.size() != CELL_SIZE) {
        RefuseLength(node, *property, "one cell of 4 bytes");
    }
    return Cell(property->value, 0);
}

uint32_t RequireU32(const CDeviceTreeNode& node, std::string_view name) {
    const std::optional<uint32_t> value = ReadU32(node, name);
    if (!value) {
        Refuse(node, name, "is missing", "one cell of 4 bytes");
    }
    return *value;
}

std::vector<uint32_t> ReadCells(const CDeviceTreeNode& node, std::string_view name) {
    std::vector<uint32_t> cells;
    const CDeviceTreeProperty* property = node.Find(name);
    if (property == nullptr) {
        return cells;
    }
    if (property->value.empty() || property->value.size() % CELL_SIZE != 0) {
        RefuseLength(node, *property, "one or more cells of 4 bytes");
    }
    for (size_t index = 0; index < property->value.size() / CELL_SIZE; ++index) {
        cells.push_back(Cell(property->value, index));
    }
    return cells;
}

std::optional<std::string> ReadString(const CDeviceTreeNode& node, std::string_view name) {
    if (node.Find(name) == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> strings = ReadStrings(node, name);
    if (strings.size() != 1) {
        Refuse(node, name, "has " + std::to_string(strings.size()) + " strings", "one string");
    }
    return std::move(strings.front());
}

std::vector<std::string> ReadStrings(const CDeviceTreeNode& node, std::string_view name) {
    std::vector<std::string> strings;
    const CDeviceTreeProperty* property = node.Find(name);
    if (property == nullptr) {
        return strings;
    }
    if (property->value.empty()) {
        RefuseLength(node, *property, "a string that ends in a zero byte");
    }
    auto begin = property->value.begin();
    while (begin != property->value.end()) {
        const auto end = std::find(begin, property->value.end(), uint8_t{0});
        if (end == property->value.end()) {
            Refuse(node, name, "has no zero byte at its end", "a string that ends in one");
        }
        strings.emplace_back(begin, end);
        begin = end + 1;
    }
    return strings;
}
