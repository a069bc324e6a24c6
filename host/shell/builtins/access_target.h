// What peek and poke work on: a value or an array, as it describes itself.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_menu.h"
#include "host/shell/value_type.h"

class CAccessTarget {
  public:
    // Throws CUsageError when the node is neither.
    explicit CAccessTarget(CDiagObj& node);
    static bool Is(const CDiagObj& node);

    CDiagMenu& Node() const { return m_node; }
    bool IsArray() const { return m_node.GetNodeType() != TVALUE; }
    CValueType Type() const { return CValueType(m_vt); }
    bool IsReadOnly() const { return m_read_only; }
    // Whether every peek of it is logged.
    bool IsTraced() const { return (m_vt & VF_TRACED) != 0; }
    // Of an array.
    uint64_t First() const { return m_first; }
    uint64_t Last() const { return m_last; }
    // Of a position, as the array is read: an index or an address.
    std::string PositionText(uint64_t position) const;
    // "0x0 to 0xff"
    std::string Positions() const { return PositionText(m_first) + " to " + PositionText(m_last); }

  private:
    CDiagMenu& m_node;
    uint8_t m_vt = 0;
    uint64_t m_first = 0;
    uint64_t m_last = 0;
    bool m_read_only = false;
};
