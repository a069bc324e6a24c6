#include "boards/sim/state_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "framework/diag_exception.h"

namespace {

// The process that wrote itself into the file: "process 1234", as far as it can be read.
std::string HolderOf(int fd) {
    std::array<char, 16> pid{};
    const ssize_t size = ::pread(fd, pid.data(), pid.size(), 0);
    return size > 0 ? "process " + std::string(pid.data(), static_cast<size_t>(size))
                    : "another process";
}

int OpenIn(const std::filesystem::path& folder) {
    std::error_code unmade;
    std::filesystem::create_directories(folder, unmade);
    return ::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
}

}  // namespace

CStateLock::CStateLock(const std::filesystem::path& folder) : m_file(OpenIn(folder)) {
    if (!m_file.IsOpen()) {
        return;
    }
    if (::flock(m_file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw CDiagException(
            "%s: %s simulates a board with these contents; end it, or give another folder with "
            "--state DIR",
            folder.c_str(), HolderOf(m_file.Get()).c_str());
    }
    const std::string pid = std::to_string(::getpid());
    // Only for the message: who cannot write it is still the holder.
    if (::ftruncate(m_file.Get(), 0) == 0) {
        [[maybe_unused]] const ssize_t written = ::pwrite(m_file.Get(), pid.data(), pid.size(), 0);
    }
}
