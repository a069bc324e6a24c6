// A folder of a test's own, removed with everything in it.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <system_error>
#include <vector>

class CTempFolder {
  public:
    CTempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "morva-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), name);
        }
        m_path = name;
    }
    ~CTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

    // Writes a file below the folder, making the folders it needs.
    std::filesystem::path Write(const std::filesystem::path& file,
                                std::span<const uint8_t> bytes) const {
        std::filesystem::path path = m_path / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream out(path, std::ios::binary);
        out.exceptions(std::ios::failbit | std::ios::badbit);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        return path;
    }

  private:
    std::filesystem::path m_path;
};

// All bytes of a file; throws when it cannot be read.
inline std::vector<uint8_t> BytesOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    in.exceptions(std::ios::failbit | std::ios::badbit);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::filesystem::path& path, const std::vector<uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// Changes one byte in place.
inline void PatchFile(const std::filesystem::path& path, std::streamoff offset, uint8_t byte) {
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.seekp(offset);
    file.put(static_cast<char>(byte));
}
