#include "boards/i2c_sim/command_process.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "boards/preload/preloading.h"

namespace {

constexpr std::array PASSED_ON = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGUSR1,
                                  SIGUSR2, SIGALRM, SIGCONT, SIGTSTP, SIGWINCH};

sigset_t Watched() {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : PASSED_ON) {
        ::sigaddset(&set, signal);
    }
    ::sigaddset(&set, SIGCHLD);
    return set;
}

}  // namespace

CCommandProcess::CCommandProcess() {
    // Who starts this process may have chosen to hear of no child's end.
    ::signal(SIGCHLD, SIG_DFL);
    const sigset_t watched = Watched();
    ::sigprocmask(SIG_BLOCK, &watched, &m_before);
    m_signals = ::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_signals < 0) {
        throw SystemError("cannot watch for signals");
    }
}

CCommandProcess::~CCommandProcess() {
    ::close(m_signals);
}

int CCommandProcess::Start(char** words) {
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    ::posix_spawnattr_setsigmask(&attributes, &m_before);
    const int error = ::posix_spawnp(&m_pid, words[0], nullptr, &attributes, words, environ);
    ::posix_spawnattr_destroy(&attributes);
    return error;
}

bool CCommandProcess::Attend() {
    signalfd_siginfo signal;
    bool changed = false;
    while (::read(m_signals, &signal, sizeof signal) == sizeof signal) {
        if (signal.ssi_signo == SIGCHLD) {
            changed = true;
        } else {
            PassOn(static_cast<int>(signal.ssi_signo), signal.ssi_code > 0,
                   static_cast<pid_t>(signal.ssi_pid));
        }
    }
    return changed && AwaitChange();
}

// The terminal tells its whole foreground at once, and so may COMMAND.
void CCommandProcess::PassOn(int signal, bool from_terminal, pid_t sender) const {
    if (!from_terminal && sender != m_pid) {
        ::kill(m_pid, signal);
    }
}

bool CCommandProcess::AwaitChange() {
    while (::waitpid(m_pid, &m_status, WNOHANG | WUNTRACED) == m_pid) {
        if (!WIFSTOPPED(m_status)) {
            return true;
        }
        // Who waits for this process is to see it stopped. Going on, both go on.
        ::raise(SIGSTOP);
        ::kill(m_pid, SIGCONT);
    }
    return false;
}

int CCommandProcess::PassOnStatus() const {
    if (WIFEXITED(m_status)) {
        return WEXITSTATUS(m_status);
    }
    // The core, if any, is COMMAND's.
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const int signal = WTERMSIG(m_status);
    ::signal(signal, SIG_DFL);
    sigset_t only;
    ::sigemptyset(&only);
    ::sigaddset(&only, signal);
    ::sigprocmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal);
    constexpr int BY_SIGNAL = 128;  // as a shell would tell it
    return BY_SIGNAL + signal;
}
