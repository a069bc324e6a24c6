#include "host/shell/input/terminal_echo.h"
#include "host/shell/run/ignored_signal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace {

// The signal handlers need them, and there is one terminal.
termios g_found{};
termios g_quiet{};
std::atomic<const termios*> g_wanted{nullptr};  // null when the terminal is not taken
int g_event = -1;
std::atomic<bool> g_resized{false};
std::atomic<bool> g_resumed{false};
static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers set it");
static_assert(std::atomic<const termios*>::is_always_lock_free, "signal handlers read it");

// In the background the terminal belongs to others.
bool IsForeground() {
    return ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

void Want(const termios& modes, int when) {
    g_wanted = &modes;
    while (::tcsetattr(STDIN_FILENO, when, &modes) != 0 && errno == EINTR) {
    }
}

void Install(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

// Gives the terminal back, then lets the signal do what it does by itself.
extern "C" void OnStop(int signal) {
    const int saved = errno;
    if (IsForeground()) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &g_found);
    }
    Install(signal, SIG_DFL);
    sigset_t self;
    ::sigemptyset(&self);
    ::sigaddset(&self, signal);
    ::raise(signal);
    // Here it takes effect; a stopped program goes on behind it.
    ::pthread_sigmask(SIG_UNBLOCK, &self, nullptr);
    ::pthread_sigmask(SIG_BLOCK, &self, nullptr);
    Install(signal, OnStop);
    errno = saved;
}

extern "C" void OnContinue(int) {
    const int saved = errno;
    if (IsForeground()) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, g_wanted.load());
    }
    g_resumed = true;
    ::eventfd_write(g_event, 1);
    errno = saved;
}

extern "C" void OnResize(int) {
    const int saved = errno;
    g_resized = true;
    ::eventfd_write(g_event, 1);
    errno = saved;
}

struct CHandler {
    int signal;
    void (*handler)(int);
    bool installed = false;
};
std::array<CHandler, 3> g_handlers = {{
    {SIGTSTP, OnStop},
    {SIGCONT, OnContinue},
    {SIGWINCH, OnResize},
}};

}  // namespace

CTerminalEcho::CTerminalEcho() {
    g_event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (g_event < 0 || ::tcgetattr(STDIN_FILENO, &g_found) != 0) {
        throw std::system_error(errno, std::generic_category(), "terminal");
    }
    g_quiet = g_found;
    // Keys go through one by one, as the editor will want them; those that send
    // signals work on.
    g_quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | IEXTEN);
    g_quiet.c_lflag |= ISIG;
    g_quiet.c_cc[VMIN] = 1;
    g_quiet.c_cc[VTIME] = 0;
    Want(g_quiet, TCSADRAIN);
    for (CHandler& handler : g_handlers) {
        handler.installed = !IsIgnored(handler.signal);
        if (handler.installed) {
            Install(handler.signal, handler.handler);
        }
    }
}

CTerminalEcho::~CTerminalEcho() {
    for (const CHandler& handler : g_handlers) {
        if (handler.installed) {
            Install(handler.signal, SIG_DFL);
        }
    }
    // Draining keeps what was typed ahead, for whoever reads next.
    Want(g_found, TCSADRAIN);
    g_wanted = nullptr;
    ::close(g_event);
}

int CTerminalEcho::Descriptor() const {
    return g_event;
}

CTerminalEcho::EChange CTerminalEcho::TakeChange() {
    eventfd_t count = 0;
    ::eventfd_read(g_event, &count);
    const bool resized = g_resized.exchange(false);
    if (g_resumed.exchange(false)) {
        return EChange::RESUMED;
    }
    return resized ? EChange::SIZE : EChange::NONE;
}

CEchoedInput::CEchoedInput() {
    if (g_wanted != nullptr) {
        Want(g_found, TCSADRAIN);
    }
}

CEchoedInput::~CEchoedInput() {
    if (g_wanted != nullptr) {
        Want(g_quiet, TCSADRAIN);
    }
}
