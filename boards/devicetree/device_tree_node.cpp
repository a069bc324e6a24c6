#include "boards/devicetree/device_tree_node.h"

#include <algorithm>

#include "boards/devicetree/printable_text.h"

std::string CDeviceTreeNode::Path() const {
    if (m_parent == nullptr) {
        return "/";
    }
    const std::string above = m_parent->m_parent == nullptr ? "" : m_parent->Path();
    return above + "/" + PrintableText(m_name);
}

const CDeviceTreeProperty* CDeviceTreeNode::Find(std::string_view name) const {
    const auto found = std::find_if(m_properties.begin(), m_properties.end(),
                                    [name](const auto& property) { return property.name == name; });
    return found == m_properties.end() ? nullptr : &*found;
}

CDeviceTreeNode& CDeviceTreeNode::AddNode(std::string_view name) {
    m_children.push_back(std::make_unique<CDeviceTreeNode>(this, name));
    return *m_children.back();
}
