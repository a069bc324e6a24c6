#include "host/shell/interrupt.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"
#include "host/exception_text.h"

namespace {

// The signal handler may do next to nothing, so it hands on through a pipe.
constexpr char INTERRUPTED = 'i';
constexpr char FINISHED = 'f';
std::array<int, 2> g_pipe{-1, -1};
std::atomic<bool> g_pending{false};
int g_pending_event = -1;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void Tell(char what) {
    // A full pipe tells already.
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &what, 1);
}

extern "C" void OnInterrupt(int) {
    const int saved = errno;
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
    // The watcher must not take signals from the thread that reads the keyboard:
    // its waiting has to end, for a window that was resized too.
    sigset_t set;
    ::sigfillset(&set);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &set, &before);
    m_watcher = std::thread([this] { Watch(); });
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);

    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    ::sigaction(SIGINT, &action, nullptr);
}

CInterrupt::~CInterrupt() {
    ::signal(SIGINT, SIG_DFL);
    Tell(FINISHED);
    m_watcher.join();
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    ::close(g_pending_event);
}

bool CInterrupt::IsPending() const {
    return g_pending;
}

void CInterrupt::Clear() {
    g_pending = false;
    eventfd_t count = 0;
    ::eventfd_read(g_pending_event, &count);
}

int CInterrupt::Descriptor() const {
    return g_pending_event;
}

void CInterrupt::SetForeground(CDiagMenu* node) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_foreground = node;
}

void CInterrupt::Watch() {
    char what = FINISHED;
    while (::read(g_pipe[0], &what, 1) == 1 && what != FINISHED) {
        const std::lock_guard<std::mutex> guard(m_lock);
        if (m_foreground != nullptr) {
            // Only a test understands it; a command's refusal is of no interest.
            COutMsg stop(MSG_STOP, m_foreground->GetId());
            CInMsg in(stop);
            COutMsg answer;
            try {
                m_foreground->HandleMsg(in, answer);
            } catch (...) {
                m_foreground->SendLog(LW_ERR_SW, "%s", CurrentExceptionText().c_str());
            }
        }
    }
}
