// A folder of its own for a test, removed with everything in it.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

class CTempFolder {
  public:
    CTempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "sim-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("cannot make a folder like " + name);
        }
        m_path = name;
    }
    ~CTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

inline std::vector<uint8_t> BytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::filesystem::path& path, const std::vector<uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    for (const uint8_t byte : bytes) {
        file.put(static_cast<char>(byte));
    }
}

// Changes one byte in place.
inline void PatchFile(const std::filesystem::path& path, std::streamoff offset, uint8_t byte) {
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(offset);
    file.put(static_cast<char>(byte));
}
