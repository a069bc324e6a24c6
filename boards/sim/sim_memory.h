// The contents of one memory chip: a plain file of the chip's size that any
// tool may read or change while the simulation runs. Every access opens the
// file by name, so that a changed or replaced file is seen at once.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "framework/diag_mutex.h"

class CSimMemory {
  public:
    // Creates a missing file, and its folders, from `image` (exactly `size`
    // bytes) or, without one, filled with 0xFF. Throws CDiagException when the
    // file cannot be made or used, or is not of the chip's size.
    CSimMemory(std::filesystem::path path, uint32_t size, std::span<const uint8_t> image = {});

    uint32_t Size() const { return m_size; }
    const std::filesystem::path& Path() const { return m_path; }

    // Either throws CDiagException, naming the file and the reason. Safe to use
    // from several threads.
    void Read(uint32_t offset, std::span<uint8_t> out) const;
    void Write(uint32_t offset, std::span<const uint8_t> bytes);

  private:
    const std::filesystem::path m_path;
    const uint32_t m_size;
    mutable CMutex m_lock;
};
