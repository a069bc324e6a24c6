#include "host/shell/run/foreground_stop.h"

#include <chrono>
#include <utility>

#include "host/diag_tree.h"
#include "host/shell/duration_text.h"
#include "host/shell/run/node_run.h"
#include "host/terminal.h"

CForegroundStop::CForegroundStop(CTerminal& terminal, CRunWatch::CRunning& running, CNodeRun& run)
    : m_terminal(terminal), m_running(running), m_run(&run), m_name(PathOf(run.Node())) {}

CForegroundStop::CForegroundStop(CTerminal& terminal, CRunWatch::CRunning& running,
                                 std::string builtin)
    : m_terminal(terminal), m_running(running), m_run(nullptr), m_name(std::move(builtin)) {}

void CForegroundStop::OnInterrupt(uint64_t now) {
    // First of all: the screen may be stopped, with Ctrl-S, and what is written
    // to it then waits.
    const bool waits = m_running.IsWaiting();
    const bool understood = m_run == nullptr || m_run->Stop();
    const bool first = !m_first.has_value();
    if (first) {
        m_first = now;
    }
    const bool again = !first && now - m_last >= SOON_MS;
    m_last = now;
    // Else what runs in it answers.
    if (!m_running.IsInnermost()) {
        return;
    }
    Say(understood || waits, now);
    if (!first && (!m_told.has_value() || now - *m_told >= TELL_EVERY_MS)) {
        m_told = now;
        Tell(now, again);
    }
}

void CForegroundStop::Say(bool stops, uint64_t now) {
    if (stops) {
        SayStopping(now);
    } else if (!std::exchange(m_goes_on, true)) {
        m_terminal.Write(m_name + ": cannot be stopped, it goes on to its end\n");
    }
}

// Built-ins end at once, or say themselves what became of them.
void CForegroundStop::SayStopping(uint64_t now) {
    if (!std::exchange(m_stopping_said, true) && !m_running.ShowStopping(now) && m_run != nullptr) {
        m_terminal.Write("stopping " + m_name + "\n");
    }
}

void CForegroundStop::Tell(uint64_t now, bool again) {
    std::string text = m_name + ": ";
    if (m_goes_on) {
        text += "goes on to its end";
    } else {
        // A test restores what it changed before it ends.
        const bool test = m_run != nullptr && m_run->Test() != nullptr;
        const char* still = test ? "still stopping and restoring" : "still stopping";
        text += again ? "asked again to stop" : still;
        text += " after " + DurationText(std::chrono::milliseconds(now - *m_first));
    }
    m_terminal.Write(text + m_running.HowFar(now) + "\n");
}
