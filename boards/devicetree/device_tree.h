// A device tree, checked whole and parsed out of its blob. After that nobody
// reads the blob's structure again: the nodes are plain objects, and a damaged
// blob has been refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "boards/devicetree/device_tree_node.h"

class CDeviceTree {
  public:
    // No board's description comes near this; what is larger is the wrong file.
    static constexpr size_t MAX_SIZE = size_t{16} << 20;
    // A live T2080 board has less than a thousand nodes, seven deep.
    static constexpr size_t MAX_NODES = 16384;
    static constexpr size_t MAX_DEPTH = 32;

    // `blob` lies at an address that eight divides and outlives the tree;
    // `file` names it in messages. Throws CDiagException with the file and the
    // fault.
    CDeviceTree(const std::string& file, std::span<const uint8_t> blob);

    const CDeviceTreeNode& Root() const { return *m_root; }
    // The node with that phandle, or null.
    const CDeviceTreeNode* NodeOf(uint32_t phandle) const;
    // The node of that path, or null.
    const CDeviceTreeNode* NodeAt(std::string_view path) const;

  private:
    void AddPhandle(const CDeviceTreeNode& node);

    std::unique_ptr<CDeviceTreeNode> m_root;
    std::unordered_map<uint32_t, const CDeviceTreeNode*> m_phandles;
};
