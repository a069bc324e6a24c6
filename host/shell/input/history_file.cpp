#include "host/shell/input/history_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <deque>
#include <system_error>

#include "framework/file_descriptor.h"

namespace {

constexpr mode_t OWNER_ONLY = 0600;
// Bytes of a line that are looked at; what is longer is no typed line.
constexpr size_t LINE_BOUND = 65536;

[[noreturn]] void Throw(int error) {
    throw std::system_error(error, std::generic_category());
}

class CDescriptor : public CFileDescriptor {
  public:
    using CFileDescriptor::CFileDescriptor;

    struct stat Info() const {
        struct stat info {};
        if (::fstat(Get(), &info) != 0) {
            Throw(errno);
        }
        return info;
    }
    // Whether the lock was granted; some file systems have none.
    bool Lock(int operation) const {
        int result = 0;
        do {
            result = ::flock(Get(), operation);
        } while (result != 0 && errno == EINTR);
        return result == 0;
    }
};

// A pipe or a device would be waited for, or never end.
int OpenPlain(const std::filesystem::path& path, int flags) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, OWNER_ONLY);
    struct stat info {};
    if (fd >= 0 && (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))) {
        ::close(fd);
        errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
        return -1;
    }
    return fd;
}

struct CContent {
    std::deque<std::string> lines;  // the last ones that are to be kept
    size_t count = 0;               // of all lines
};

CContent ReadLines(const CDescriptor& file, size_t most,
                   const std::function<bool(const std::string&)>& keep) {
    CContent content;
    std::string line;
    const auto end_line = [&] {
        ++content.count;
        if (line.size() < LINE_BOUND && keep(line)) {
            content.lines.push_back(line);
            if (content.lines.size() > most) {
                content.lines.pop_front();
            }
        }
        line.clear();
    };
    std::array<char, 65536> part;
    ssize_t size = 0;
    while ((size = ::read(file.Get(), part.data(), part.size())) != 0) {
        if (size < 0 && errno != EINTR) {
            Throw(errno);
        }
        for (ssize_t i = 0; i < size; ++i) {
            const char c = part[static_cast<size_t>(i)];
            if (c == '\n') {
                end_line();
            } else if (line.size() < LINE_BOUND) {
                line += c;
            }
        }
    }
    if (!line.empty()) {
        end_line();
    }
    return content;
}

void WriteAll(int fd, const std::string& text) {
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(fd, text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR) {
            Throw(errno);
        }
        written += count > 0 ? static_cast<size_t>(count) : 0;
    }
}

// Puts a file with these lines in place of the one at `path`.
void Replace(const std::filesystem::path& path, const std::deque<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    std::string draft = path.string() + ".XXXXXX";
    const CDescriptor file(::mkostemp(draft.data(), O_CLOEXEC));
    if (!file.IsOpen()) {
        Throw(errno);
    }
    try {
        WriteAll(file.Get(), text);
        std::filesystem::rename(draft, path);
    } catch (...) {
        ::unlink(draft.c_str());
        throw;
    }
}

bool EndsInALine(const CDescriptor& file, off_t size) {
    char last = '\n';
    return size == 0 || ::pread(file.Get(), &last, 1, size - 1) != 1 || last == '\n';
}

}  // namespace

std::vector<std::string> CHistoryFile::Load(
    size_t most, const std::function<bool(const std::string&)>& keep) const {
    const CDescriptor file(OpenPlain(m_path, O_RDONLY));
    if (!file.IsOpen()) {
        if (errno == ENOENT) {
            return {};
        }
        Throw(errno);
    }
    // Held while the file is replaced, so that nobody writes to the old one. When
    // another shell is about it, this one need not be.
    const bool locked = file.Lock(LOCK_EX | LOCK_NB) && file.Info().st_nlink != 0;
    const CContent content = ReadLines(file, most, keep);
    if (locked && content.count > 2 * most) {
        try {
            Replace(std::filesystem::canonical(m_path), content.lines);
        } catch (const std::system_error&) {
            // A long file does no harm; where it cannot be written, Prepare says so.
        }
    }
    return {content.lines.begin(), content.lines.end()};
}

void CHistoryFile::Prepare() const {
    std::filesystem::create_directories(m_path.parent_path());
    if (!CDescriptor(OpenPlain(m_path, O_RDWR | O_APPEND | O_CREAT)).IsOpen()) {
        Throw(errno);
    }
}

void CHistoryFile::Append(const std::string& line) const {
    while (true) {
        const CDescriptor file(OpenPlain(m_path, O_RDWR | O_APPEND | O_CREAT));
        if (!file.IsOpen()) {
            Throw(errno);
        }
        file.Lock(LOCK_SH);
        const struct stat info = file.Info();
        if (info.st_nlink == 0) {
            continue;  // it was replaced before the lock was granted
        }
        // In one go, so that lines of several shells do not mix.
        WriteAll(file.Get(), (EndsInALine(file, info.st_size) ? "" : "\n") + line + "\n");
        return;
    }
}
