#include "host/shell/run/interrupt.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "host/shell/run/quiet_thread.h"
#include "host/shell/run/request.h"

namespace {

// The signal handler may do next to nothing, so it hands on through a pipe.
constexpr std::array SIGNALS = {SIGINT, SIGTERM, SIGHUP};
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
    for (const int signal : SIGNALS) {
        struct sigaction before {};
        ::sigaction(signal, nullptr, &before);
        // "nohup diagsh" shall outlive its terminal.
        if (signal != SIGHUP || before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

CInterrupt::~CInterrupt() {
    for (const int signal : SIGNALS) {
        ::signal(signal, SIG_DFL);
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
    if (g_end) {
        return;
    }
    g_pending = false;
    eventfd_t count = 0;
    ::eventfd_read(g_pending_event, &count);
}

int CInterrupt::Descriptor() const {
    return g_pending_event;
}

void CInterrupt::SetForeground(std::function<void()> stop) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_foreground = std::move(stop);
}

void CInterrupt::Watch() {
    char what = FINISHED;
    while (::read(g_pipe[0], &what, 1) == 1 && what != FINISHED) {
        const std::lock_guard<std::mutex> guard(m_lock);
        if (m_foreground) {
            m_foreground();
        }
    }
}

CForeground::CForeground(CInterrupt& interrupt, std::function<void()> stop)
    : m_interrupt(interrupt) {
    m_interrupt.SetForeground(std::move(stop));
}

CForeground::~CForeground() {
    m_interrupt.SetForeground(nullptr);
}
