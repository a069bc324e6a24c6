// The files of export and import.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "framework/diag_types.h"

// An open file, closed when it goes.
class CRawDescriptor {
  public:
    CRawDescriptor(const std::string& path, int flags);
    ~CRawDescriptor();
    CRawDescriptor(const CRawDescriptor&) = delete;
    CRawDescriptor& operator=(const CRawDescriptor&) = delete;

    bool IsOpen() const { return m_fd >= 0; }
    int Get() const { return m_fd; }

  private:
    const int m_fd;
};

// What is imported. Opened once, so that the file that was checked is the one
// that is read.
class CRawInput {
  public:
    // Throws CUsageError unless it is a plain file that holds something.
    explicit CRawInput(const std::string& path);

    uint64_t Size() const { return m_size; }
    // All its bytes; throws CUsageError when they are no longer Size().
    std::vector<byte_t> Read() const;

  private:
    const std::string m_name;
    const CRawDescriptor m_file;
    uint64_t m_size = 0;
};

// What is exported. It grows in a draft beside its place and is nowhere to be
// seen before it is whole.
class CRawOutput {
  public:
    // Throws CUsageError when the file cannot be made, or exists and is not to
    // be replaced.
    CRawOutput(const std::string& path, bool replace);
    // Removes the draft of a file that was not finished.
    ~CRawOutput();
    CRawOutput(const CRawOutput&) = delete;
    CRawOutput& operator=(const CRawOutput&) = delete;

    // Writes all bytes and puts the file in its place; throws CDiagException.
    void Finish(std::span<const byte_t> bytes);

  private:
    const std::string m_name;
    const bool m_replace;
    const std::filesystem::path m_place;
    const std::filesystem::path m_draft;
    const CRawDescriptor m_file;
    bool m_finished = false;
};
