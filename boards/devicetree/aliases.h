// The numbers that a description gives its buses in the node "aliases", as in
// "i2c0 = &bus" (Devicetree Specification, "/aliases node").
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "boards/devicetree/device_tree_node.h"

class CAliases {
  public:
    // `kind` is what stands before the numbers: "i2c".
    CAliases(const CDeviceTreeNode& root, std::string_view kind);

    // The lowest number of the node; nothing when it has none.
    std::optional<uint32_t> NumberOf(const CDeviceTreeNode& node) const;
    // The first number that is above all of them.
    uint32_t FirstFree() const { return m_first_free; }

  private:
    std::map<std::string, uint32_t> m_numbers;  // by path
    uint32_t m_first_free = 0;
};
