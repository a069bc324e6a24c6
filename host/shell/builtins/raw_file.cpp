#include "host/shell/builtins/raw_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "host/printable.h"
#include "host/usage_error.h"

namespace {

namespace fs = std::filesystem;

constexpr mode_t PERMISSIONS = 0666;  // less what the umask takes away

// For messages; throws CUsageError when no file can have that name.
std::string NameOf(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        throw CUsageError("\"" + Printable(path) + "\" cannot name a file");
    }
    return Printable(path);
}

std::string LastError() {
    return GetErrorStr(errno);
}

// As ::read and ::write with the whole size; returns what was moved before an
// error, which is then in errno, or the end of the file, with 0 there.
template <class Byte, class Move>
size_t MoveAll(std::span<Byte> bytes, Move move) {
    size_t moved = 0;
    while (moved < bytes.size()) {
        errno = 0;
        const ssize_t count = move(bytes.data() + moved, bytes.size() - moved);
        if (count > 0) {
            moved += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            break;
        }
    }
    return moved;
}

// The name beside the file under which it grows.
fs::path DraftOf(const fs::path& place) {
    fs::path draft = place;
    draft += "." + std::to_string(::getpid()) + ".tmp";
    return draft;
}

bool Exists(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// Where the file comes to lie: a link that leads to a file stays a link.
fs::path PlaceOf(const std::string& name, bool replace) {
    std::error_code error;
    const fs::file_status behind = fs::status(name, error);
    if (fs::exists(behind) && !fs::is_regular_file(behind)) {
        throw CUsageError(Printable(name) +
                          (fs::is_directory(behind) ? " is a directory" : " is not a plain file"));
    }
    if (Exists(name) && !replace) {
        throw CUsageError(Printable(name) + " exists; --force replaces it");
    }
    const fs::path real = fs::canonical(name, error);
    return error ? fs::path(name) : real;
}

}  // namespace

CRawDescriptor::CRawDescriptor(const std::string& path, int flags)
    : m_fd(::open(path.c_str(), flags | O_CLOEXEC, PERMISSIONS)) {}

CRawDescriptor::~CRawDescriptor() {
    if (IsOpen()) {
        ::close(m_fd);
    }
}

// Without waiting, or a pipe nobody writes to would hold the shell.
CRawInput::CRawInput(const std::string& path)
    : m_name(NameOf(path)), m_file(path, O_RDONLY | O_NONBLOCK) {
    struct stat info {};
    if (!m_file.IsOpen() || ::fstat(m_file.Get(), &info) != 0) {
        throw CUsageError(m_name + ": " + LastError());
    }
    if (!S_ISREG(info.st_mode)) {
        throw CUsageError(m_name +
                          (S_ISDIR(info.st_mode) ? " is a directory" : " is not a plain file"));
    }
    if (info.st_size == 0) {
        throw CUsageError(m_name + " is empty");
    }
    m_size = static_cast<uint64_t>(info.st_size);
}

std::vector<byte_t> CRawInput::Read() const {
    // Room for one more, to see whether the file has grown.
    std::vector<byte_t> bytes(m_size + 1);
    const size_t count = MoveAll(std::span(bytes), [this](byte_t* to, size_t size) {
        return ::read(m_file.Get(), to, size);
    });
    if (count < m_size && errno != 0) {
        throw CUsageError(m_name + ": " + LastError());
    }
    if (count != m_size) {
        throw CUsageError(m_name + " changed while it was read");
    }
    bytes.resize(m_size);
    return bytes;
}

CRawOutput::CRawOutput(const std::string& path, bool replace)
    : m_name(NameOf(path)),
      m_replace(replace),
      m_place(PlaceOf(path, replace)),
      m_draft(DraftOf(m_place)),
      m_file(m_draft, O_WRONLY | O_CREAT | O_EXCL) {
    if (!m_file.IsOpen()) {
        throw CUsageError("cannot make " + Printable(m_draft.string()) + ": " + LastError());
    }
}

CRawOutput::~CRawOutput() {
    if (!m_finished) {
        ::unlink(m_draft.c_str());
    }
}

void CRawOutput::Finish(std::span<const byte_t> bytes) {
    const auto write = [this](const byte_t* from, size_t size) {
        return ::write(m_file.Get(), from, size);
    };
    // On the disk before it gets its name, or a power cut may leave half of it.
    if (MoveAll(bytes, write) != bytes.size() || ::fsync(m_file.Get()) != 0) {
        throw CDiagException("cannot write %s: %s", m_name.c_str(), LastError().c_str());
    }
    // Somebody else may have made it meanwhile.
    if (!m_replace && Exists(m_place)) {
        throw CDiagException("%s exists by now; --force replaces it", m_name.c_str());
    }
    std::error_code error;
    fs::rename(m_draft, m_place, error);
    if (error) {
        throw CDiagException("cannot make %s: %s", m_name.c_str(), error.message().c_str());
    }
    m_finished = true;
}
