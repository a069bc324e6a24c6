// A device whose contents are plain bytes that can be exported and imported as
// a file.
#pragma once

#include <cstdint>
#include <span>

#include "framework/diag_types.h"

class IRawMemory {
  public:
    IRawMemory() = default;
    virtual ~IRawMemory() = default;
    IRawMemory(const IRawMemory&) = delete;
    IRawMemory& operator=(const IRawMemory&) = delete;

    // Size in bytes.
    virtual uint32_t GetRawSize() const = 0;
    // How many bytes, from a multiple of this offset, are written in one go.
    virtual uint32_t GetRawPage() const = 0;
    virtual bool IsRawReadOnly() const = 0;

    // Move bytes from `offset` on; the range must lie inside the memory. Both
    // throw CDiagException; after a failed write the range is in doubt.
    virtual void ReadRaw(uint32_t offset, std::span<byte_t> to) = 0;
    virtual void WriteRaw(uint32_t offset, std::span<const byte_t> from) = 0;
};
