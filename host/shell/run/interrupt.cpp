#include "host/shell/run/interrupt.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "host/shell/run/ignored_signal.h"
#include "host/shell/run/quiet_thread.h"
#include "host/shell/run/request.h"

namespace {

// The signal handler may do next to nothing, so it hands on through a pipe.
constexpr std::array SIGNALS = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
constexpr char INTERRUPTED = 'i';
constexpr char FINISHED = 'f';
std::array<int, 2> g_pipe{-1, -1};
std::atomic<bool> g_pending{false};
std::atomic<bool> g_end{false};
int g_pending_event = -1;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void Tell(char what) {
    // A full pipe tells already.
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &what, 1);
}

extern "C" void OnInterrupt(int signal) {
    const int saved = errno;
    if (signal != SIGINT) {
        g_end = true;
    }
    g_pending = true;
    ::eventfd_write(g_pending_event, 1);
    Tell(INTERRUPTED);
    errno = saved;
}

}  // namespace

CInterrupt::CInterrupt() {
    if (::pipe2(g_pipe.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    ::fcntl(g_pipe[1], F_SETFL, O_NONBLOCK);
    g_pending_event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (g_pending_event < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    Clear();
    m_watcher = StartQuietThread([this] { Watch(); });

    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    // "nohup diagsh" shall outlive its terminal.
    static const bool nohup = IsIgnored(SIGHUP);
    for (const int signal : SIGNALS) {
        if (signal != SIGHUP || !nohup) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

CInterrupt::~CInterrupt() {
    // What comes after has nothing to stop, and a Ctrl-C too many shall not turn
    // the end of a run into a failure.
    for (const int signal : SIGNALS) {
        ::signal(signal, SIG_IGN);
    }
    Tell(FINISHED);
    m_watcher.join();
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    ::close(g_pending_event);
}

bool CInterrupt::IsPending() const {
    return g_pending;
}

bool CInterrupt::IsEnd() const {
    return g_end;
}

void CInterrupt::Clear() {
    eventfd_t count = 0;
    ::eventfd_read(g_pending_event, &count);
    g_pending = false;
    // The end stays pending, also when it comes just now.
    if (g_end) {
        g_pending = true;
        ::eventfd_write(g_pending_event, 1);
    }
}

int CInterrupt::Descriptor() const {
    return g_pending_event;
}

void CInterrupt::Watch() {
    char what = FINISHED;
    while (::read(g_pipe[0], &what, 1) == 1 && what != FINISHED) {
        const std::lock_guard<std::mutex> guard(m_lock);
        for (const std::function<void()>& stop : m_foreground) {
            stop();
        }
    }
}

CForeground::CForeground(CInterrupt& interrupt, std::function<void()> stop)
    : m_interrupt(interrupt) {
    const std::lock_guard<std::mutex> guard(m_interrupt.m_lock);
    m_interrupt.m_foreground.push_front(std::move(stop));
}

CForeground::~CForeground() {
    const std::lock_guard<std::mutex> guard(m_interrupt.m_lock);
    m_interrupt.m_foreground.pop_front();
}
