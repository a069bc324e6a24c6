#include "bench/program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

using CClock = std::chrono::steady_clock;

constexpr int PATIENCE_MS = 10'000;
constexpr winsize SCREEN{24, 80, 0, 0};

std::vector<char*> ArgumentsOf(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    return arguments;
}

double MsBetween(CClock::time_point from, CClock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

double MsOfTime(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

CProcessCost AwaitProcess(pid_t pid, const std::string& name, CClock::time_point began) {
    int status = 0;
    rusage usage{};
    while (::wait4(pid, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), name);
        }
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(name + ": did not exit with 0");
    }
    return {MsBetween(began, CClock::now()), MsOf(usage)};
}

}  // namespace

double MsOf(const rusage& usage) {
    return MsOfTime(usage.ru_utime) + MsOfTime(usage.ru_stime);
}

CProcessCost RunProgram(const std::vector<std::string>& words) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    }
    const CClock::time_point began = CClock::now();
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, words.front().c_str(), &actions, nullptr,
                                    ArgumentsOf(words).data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), words.front());
    }
    return AwaitProcess(pid, words.front(), began);
}

CTerminalProgram::CTerminalProgram(const std::vector<std::string>& words)
    : m_name(words.front()), m_began(CClock::now()) {
    const std::vector<char*> arguments = ArgumentsOf(words);
    m_pid = ::forkpty(&m_terminal, nullptr, nullptr, &SCREEN);
    if (m_pid < 0) {
        throw std::system_error(errno, std::generic_category(), "forkpty");
    }
    if (m_pid == 0) {
        ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }
}

CTerminalProgram::~CTerminalProgram() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    ::close(m_terminal);
}

double CTerminalProgram::AwaitText(std::string_view text) {
    while (m_shown.find(text) == std::string::npos) {
        if (!ReadMore()) {
            throw std::runtime_error(m_name + ": ended before it showed \"" + std::string(text) +
                                     "\", but with:\n" + m_shown);
        }
    }
    return SinceStartMs();
}

void CTerminalProgram::Type(std::string_view keys) const {
    while (!keys.empty()) {
        const ssize_t count = ::write(m_terminal, keys.data(), keys.size());
        if (count < 0) {
            throw std::system_error(errno, std::generic_category(), m_name);
        }
        keys.remove_prefix(static_cast<size_t>(count));
    }
}

CProcessCost CTerminalProgram::AwaitEnd() {
    while (ReadMore()) {
    }
    const pid_t pid = std::exchange(m_pid, -1);
    return AwaitProcess(pid, m_name, m_began);
}

double CTerminalProgram::SinceStartMs() const {
    return MsBetween(m_began, CClock::now());
}

bool CTerminalProgram::ReadMore() {
    pollfd input{m_terminal, POLLIN, 0};
    if (::poll(&input, 1, PATIENCE_MS) == 0) {
        throw std::runtime_error(m_name + ": showed nothing more for long, after:\n" + m_shown);
    }
    std::array<char, 4096> part{};
    const ssize_t count = ::read(m_terminal, part.data(), part.size());
    if (count <= 0) {
        return false;  // Linux reports the end of a pseudo-terminal as an error
    }
    m_shown.append(part.data(), static_cast<size_t>(count));
    return true;
}
