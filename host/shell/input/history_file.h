// The file of a history: plain text, one line each, shared by shells side by side.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class CHistoryFile {
  public:
    explicit CHistoryFile(std::filesystem::path path) : m_path(std::move(path)) {}

    // The last `most` lines among those that are to be kept; none where there is
    // no file. A file with more than twice as many is shortened to these. Throws
    // std::system_error.
    std::vector<std::string> Load(size_t most,
                                  const std::function<bool(const std::string&)>& keep) const;
    // Makes the file and its folder where they are missing; throws
    // std::system_error when lines cannot be appended.
    void Prepare() const;
    // Writes one line behind all that others wrote; throws std::system_error.
    void Append(const std::string& line) const;

  private:
    const std::filesystem::path m_path;
};
