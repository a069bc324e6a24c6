// A device of the tree whose contents are plain bytes, as export and import
// work on it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "framework/diag_device.h"
#include "framework/raw_memory.h"

class CShell;

class CRawNode {
  public:
    // By the path of the device or of one of its arrays; throws CUsageError for
    // other nodes.
    static CRawNode At(const CShell& shell, const std::string& path);

    CDiagDevice& Device() const { return m_device; }
    IRawMemory& Memory() const { return m_memory; }
    uint32_t Size() const { return m_memory.GetRawSize(); }
    std::string Path() const;

    // Reads in pieces, as long as `go_on`, which is told how many bytes are read;
    // false when it ended that. Throws what the device throws.
    bool Read(uint32_t offset, std::span<byte_t> to,
              const std::function<bool(size_t)>& go_on) const;

  private:
    CRawNode(CDiagDevice& device, IRawMemory& memory) : m_device(device), m_memory(memory) {}

    CDiagDevice& m_device;
    IRawMemory& m_memory;
};
