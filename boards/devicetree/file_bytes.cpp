#include "boards/devicetree/file_bytes.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

namespace {

constexpr size_t CHUNK_SIZE = size_t{64} << 10;

struct CFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::vector<uint8_t> ReadFileBytes(const std::filesystem::path& file, size_t max_size) {
    const std::unique_ptr<std::FILE, CFileCloser> in(std::fopen(file.c_str(), "rb"));
    if (in == nullptr) {
        throw CDiagException("%s: cannot be opened: %s", file.c_str(), GetErrorStr(errno).c_str());
    }
    // Not every readable file knows its size beforehand, so it is read until its end.
    std::vector<uint8_t> bytes;
    size_t size = 0;
    do {
        bytes.resize(size + CHUNK_SIZE);
        errno = 0;
        size += std::fread(bytes.data() + size, 1, CHUNK_SIZE, in.get());
        if (std::ferror(in.get()) != 0) {
            throw CDiagException("%s: cannot be read: %s", file.c_str(),
                                 GetErrorStr(errno).c_str());
        }
        if (size > max_size) {
            throw CDiagException("%s: too large: more than %zu bytes", file.c_str(), max_size);
        }
    } while (std::feof(in.get()) == 0);
    bytes.resize(size);
    return bytes;
}
