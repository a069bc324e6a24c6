// An array whose elements need no store, and the requests to peek and poke it.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "framework/diag_array.h"
#include "tests/support/bytes.h"
#include "tests/support/request.h"

// Element p reads as the low byte of p. Writes are noted, not kept.
class CTestArray : public CDiagArray<unsigned char> {
  public:
    using CWrite = std::pair<uint64_t, unsigned char>;

    CTestArray(ENodeType type, uint64_t sa, uint64_t ea, uint8_t vt, bool ro = false)
        : CDiagArray(type, "memory", "test array", sa, ea, ro, vt) {}

    void FailAt(uint64_t pos) { m_fail_at = pos; }
    const std::vector<uint64_t>& Reads() const { return m_reads; }
    const std::vector<CWrite>& Writes() const { return m_writes; }

    void Set(uint64_t pos, const unsigned char& value) override {
        if (pos == m_fail_at) {
            throw CDiagException("Failed to write memory at %04X", static_cast<unsigned int>(pos));
        }
        m_writes.emplace_back(pos, value);
    }
    unsigned char Get(uint64_t pos) override {
        if (pos == m_fail_at) {
            throw CDiagException("Failed to read memory at %04X", static_cast<unsigned int>(pos));
        }
        m_reads.push_back(pos);
        return static_cast<unsigned char>(pos);
    }

  private:
    std::optional<uint64_t> m_fail_at;
    std::vector<uint64_t> m_reads;
    std::vector<CWrite> m_writes;
};

inline CAnswer Peek(CDiagMenu& array, uint64_t first, uint64_t last) {
    return Send(array, MSG_PEEKV, first, last);
}
inline CAnswer Poke(CDiagMenu& array, uint8_t value, uint64_t first, uint64_t last) {
    return Send(array, MSG_POKEV, value, first, last);
}

// A good answer to a peek of `first` to `last`.
inline CByteVector Elements(uint64_t first, uint64_t last) {
    CBytes bytes;
    bytes.U8(0);
    for (uint64_t pos = first; pos <= last; ++pos) {
        bytes.U64(pos).U8(static_cast<uint8_t>(pos));
    }
    return bytes;
}
