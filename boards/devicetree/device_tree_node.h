// One node of a parsed device tree.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A property as it stands in the blob; boards/devicetree/property_reader.h
// reads it.
struct CDeviceTreeProperty {
    std::string_view name;
    std::span<const uint8_t> value;
};

class CDeviceTreeNode {
  public:
    CDeviceTreeNode(const CDeviceTreeNode* parent, std::string_view name)
        : m_parent(parent), m_name(name) {}

    // With the unit address; empty for the root.
    std::string_view Name() const { return m_name; }
    // For messages: names that cannot be printed as they are show a "?" instead.
    std::string Path() const;
    // Null for the root.
    const CDeviceTreeNode* Parent() const { return m_parent; }
    const std::vector<std::unique_ptr<CDeviceTreeNode>>& Children() const { return m_children; }
    const std::vector<CDeviceTreeProperty>& Properties() const { return m_properties; }
    // The property of that name, or null.
    const CDeviceTreeProperty* Find(std::string_view name) const;

    CDeviceTreeNode& AddNode(std::string_view name);
    void AddProperty(const CDeviceTreeProperty& property) { m_properties.push_back(property); }

  private:
    const CDeviceTreeNode* const m_parent;
    const std::string_view m_name;
    std::vector<CDeviceTreeProperty> m_properties;
    std::vector<std::unique_ptr<CDeviceTreeNode>> m_children;
};
