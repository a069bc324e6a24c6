#include "host/shell/run/quiet_thread.h"

#include <csignal>

std::thread StartQuietThread(std::function<void()> work) {
    // A thread inherits what is blocked where it is started.
    sigset_t all;
    ::sigfillset(&all);
    sigset_t before;
    ::pthread_sigmask(SIG_BLOCK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread(std::move(work));
    } catch (...) {
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}
