// Payloads as a test expects them, field by field in the byte order of messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/diag_msg.h"

using CByteVector = std::vector<uint8_t>;

class CBytes {
  public:
    CBytes& U8(uint8_t value) { return Append(value, 1); }
    CBytes& U16(uint16_t value) { return Append(value, 2); }
    CBytes& U32(uint32_t value) { return Append(value, 4); }
    CBytes& U64(uint64_t value) { return Append(value, 8); }
    // A text: its length in 16 bits, then the characters.
    CBytes& Text(const std::string& text) {
        Append(text.size(), 2);
        m_bytes.insert(m_bytes.end(), text.begin(), text.end());
        return *this;
    }

    operator const CByteVector&() const { return m_bytes; }
    const CByteVector& Get() const { return m_bytes; }

  private:
    CBytes& Append(uint64_t value, size_t width) {
        while (width-- != 0) {
            m_bytes.push_back(static_cast<uint8_t>(value >> (8 * width)));
        }
        return *this;
    }

    CByteVector m_bytes;
};

inline CByteVector PayloadOf(const CDiagMsg& msg) {
    const uint8_t* payload = msg.GetPayload();
    return {payload, payload + msg.GetHeader().len};
}
