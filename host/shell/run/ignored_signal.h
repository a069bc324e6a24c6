// Whether a signal is ignored, as whoever started the program may want it.
#pragma once

#include <csignal>

inline bool IsIgnored(int signal) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}
