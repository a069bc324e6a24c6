#include "boards/sim/sim_memory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"

namespace {

[[noreturn]] void Fail(const char* what, const std::filesystem::path& path, int err) {
    throw CDiagException("cannot %s %s: %s", what, path.c_str(), GetErrorStr(err).c_str());
}

// An open file, closed at the end of the scope.
class CFile {
  public:
    CFile(const std::filesystem::path& path, int flags)
        : m_path(path), m_fd(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666)) {
        if (m_fd < 0) {
            Fail("open", path, errno);
        }
    }
    ~CFile() { ::close(m_fd); }
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    void RequireSize(uint32_t size) const {
        struct stat info {};
        if (::fstat(m_fd, &info) != 0) {
            Fail("examine", m_path, errno);
        }
        if (!S_ISREG(info.st_mode)) {
            throw CDiagException("%s is not a plain file", m_path.c_str());
        }
        if (info.st_size != static_cast<off_t>(size)) {
            throw CDiagException(
                "%s holds %lld bytes, but the chip has %u; remove it to have it made anew",
                m_path.c_str(), static_cast<long long>(info.st_size), size);
        }
    }

    void Read(uint32_t offset, std::span<uint8_t> out) const {
        while (!out.empty()) {
            const ssize_t count = ::pread(m_fd, out.data(), out.size(), off_t{offset});
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                Fail("read", m_path, count < 0 ? errno : EIO);
            }
            offset += static_cast<uint32_t>(count);
            out = out.subspan(static_cast<size_t>(count));
        }
    }

    void Write(uint32_t offset, std::span<const uint8_t> bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::pwrite(m_fd, bytes.data(), bytes.size(), off_t{offset});
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                Fail("write", m_path, count < 0 ? errno : EIO);
            }
            offset += static_cast<uint32_t>(count);
            bytes = bytes.subspan(static_cast<size_t>(count));
        }
    }

  private:
    const std::filesystem::path& m_path;
    const int m_fd;
};

// Nobody ever sees the file half-made.
void Create(const std::filesystem::path& path, std::span<const uint8_t> bytes) {
    std::error_code error;
    if (path.has_parent_path()) {
        std::filesystem::create_directories(path.parent_path(), error);
        if (error) {
            Fail("create", path.parent_path(), error.value());
        }
    }
    std::filesystem::path draft = path;
    draft += "." + std::to_string(::getpid()) + ".tmp";
    try {
        CFile(draft, O_WRONLY | O_CREAT | O_TRUNC).Write(0, bytes);
        std::filesystem::rename(draft, path, error);
        if (error) {
            Fail("create", path, error.value());
        }
    } catch (const CDiagException&) {
        std::filesystem::remove(draft, error);
        throw;
    }
}

}  // namespace

CSimMemory::CSimMemory(std::filesystem::path path, uint32_t size, std::span<const uint8_t> image)
    : m_path(std::move(path)), m_size(size) {
    if (!image.empty() && image.size() != size) {
        throw CDiagException("the image for %s holds %zu bytes, but the chip has %u",
                             m_path.c_str(), image.size(), size);
    }
    if (::access(m_path.c_str(), F_OK) != 0 && errno == ENOENT) {
        Create(m_path, image.empty() ? std::vector<uint8_t>(size, 0xFF)
                                     : std::vector<uint8_t>(image.begin(), image.end()));
    }
    CFile(m_path, O_RDONLY).RequireSize(m_size);
}

void CSimMemory::Read(uint32_t offset, std::span<uint8_t> out) const {
    const CGuard<CMutex> guard(m_lock);
    const CFile file(m_path, O_RDONLY);
    file.RequireSize(m_size);
    file.Read(offset, out);
}

void CSimMemory::Write(uint32_t offset, std::span<const uint8_t> bytes) {
    const CGuard<CMutex> guard(m_lock);
    const CFile file(m_path, O_WRONLY);
    file.RequireSize(m_size);
    file.Write(offset, bytes);
}
