#include "host/shell/run/run_watch.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "framework/diag_test_base.h"
#include "host/device_lock.h"
#include "host/diag_clock.h"
#include "host/diag_tree.h"
#include "host/shell/run/progress_line.h"
#include "host/shell/run/quiet_thread.h"
#include "host/shell/screen_text.h"
#include "host/terminal.h"

namespace {

constexpr std::chrono::milliseconds LOOK_EVERY{100};

}  // namespace

struct CRunWatch::CEntry {
    std::thread::id thread;
    std::string name;
    unsigned int job = 0;                   // 0 in the foreground
    std::optional<CProgressLine> progress;  // of what is in the foreground
    std::optional<uint64_t> waiting_since = std::nullopt;
    bool wait_told = false;
};

CRunWatch::CRunWatch(CTerminal& terminal)
    : CRunWatch(terminal, [&terminal] { return terminal.Columns(); }) {}

CRunWatch::CRunWatch(CTerminal& terminal, CColumns columns)
    : m_terminal(terminal), m_columns(std::move(columns)) {
    if (m_columns() != 0) {
        m_catching.emplace(m_catcher);
    }
}

CRunWatch::~CRunWatch() {
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_ended = true;
    }
    m_changed.notify_all();
    if (m_looker.joinable()) {
        m_looker.join();
    }
}

void CRunWatch::Start() {
    m_looker = StartQuietThread([this] { LookOnAndOn(); });
}

void CRunWatch::LookOnAndOn() {
    std::unique_lock<std::mutex> guard(m_lock);
    while (!m_ended) {
        m_changed.wait(guard, [this] { return m_ended || !m_running.empty(); });
        if (m_changed.wait_for(guard, LOOK_EVERY, [this] { return m_ended; })) {
            return;
        }
        guard.unlock();
        Look(GetDiagClock().NowMs());
        guard.lock();
    }
}

void CRunWatch::Look(uint64_t now) {
    const std::lock_guard<std::mutex> guard(m_lock);
    bool waits_told = false;  // of the foreground, which may be several runs in one another
    for (CEntry& entry : m_running) {
        if (!entry.progress.has_value()) {
            LookAtWait(entry, now);
            continue;
        }
        entry.progress->Look(now);
        if (!std::exchange(waits_told, true)) {
            LookAtWait(entry, now);
        }
    }
    ShowForeground(now);
    m_terminal.ShowOpenLine();
}

// Of the innermost run that takes long enough: a built-in may run commands that
// each take a moment.
void CRunWatch::ShowForeground(uint64_t now) {
    const unsigned int columns = m_columns();
    for (CEntry& entry : m_running) {
        if (!entry.progress.has_value()) {
            continue;
        }
        if (columns == 0) {
            if (const std::optional<std::string> line = entry.progress->TakeDueLine()) {
                m_terminal.WriteUnlessOpen(*line + "\n");
            }
        } else if (entry.progress->IsDue()) {
            if (m_row_of != &entry || now - m_row_shown >= ROW_EVERY_MS) {
                ShowRow(entry, columns, now);
            }
            return;
        }
    }
}

void CRunWatch::ShowRow(const CEntry& entry, unsigned int columns, uint64_t now) {
    m_row_of = &entry;
    m_row_shown = now;
    // The last column is left free: some terminals go to the next row behind it.
    m_terminal.SetFooter(entry.progress->Row(columns - 1));
}

void CRunWatch::LookAtWait(CEntry& entry, uint64_t now) {
    const std::optional<std::string> wait = DescribeWait(entry.thread);
    if (!wait.has_value()) {
        entry.waiting_since.reset();
        entry.wait_told = false;
        return;
    }
    if (!entry.waiting_since.has_value()) {
        entry.waiting_since = now;
    } else if (!entry.wait_told && now - *entry.waiting_since >= WAIT_TOLD_AFTER_MS) {
        entry.wait_told = true;
        const std::string job = entry.job == 0 ? "" : "[" + std::to_string(entry.job) + "] ";
        m_terminal.Write(job + *wait + "\n");
    }
}

std::optional<std::string> CRunWatch::WaitOf(std::thread::id thread) const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return DescribeWait(thread);
}

std::optional<std::string> CRunWatch::DescribeWait(std::thread::id thread) const {
    const std::optional<CDeviceWait> wait = CDeviceHold::WaitOf(thread);
    if (!wait.has_value()) {
        return std::nullopt;
    }
    return std::string("waiting for ") + (wait->path ? "the path through " : "") +
           PathOf(*wait->device) + ", held by " + UserOf(wait->holder);
}

std::string CRunWatch::UserOf(std::thread::id thread) const {
    const auto entry = std::find_if(m_running.begin(), m_running.end(),
                                    [thread](const CEntry& e) { return e.thread == thread; });
    if (entry == m_running.end()) {
        return "the board";
    }
    return entry->job == 0 ? entry->name
                           : entry->name + " (job " + std::to_string(entry->job) + ")";
}

std::list<CRunWatch::CEntry>::iterator CRunWatch::Add(CEntry entry) {
    const std::lock_guard<std::mutex> guard(m_lock);
    const bool was_idle = m_running.empty();
    m_running.push_front(std::move(entry));
    if (was_idle) {
        m_changed.notify_all();
    }
    return m_running.begin();
}

void CRunWatch::Remove(std::list<CEntry>::iterator entry) {
    const std::lock_guard<std::mutex> guard(m_lock);
    if (m_row_of == &*entry) {
        m_row_of = nullptr;
        m_terminal.SetFooter("");
    }
    m_running.erase(entry);
}

CRunWatch::CRunning::CRunning(CRunWatch& watch, const std::string& name, const std::string& label,
                              const CDiagMenu* node)
    : m_watch(watch), m_note(std::in_place, node) {
    const auto* test = dynamic_cast<const CDiagTestBase*>(node);
    m_entry = watch.Add({std::this_thread::get_id(), name, 0, CProgressLine(label, test, *m_note)});
}

CRunWatch::CRunning::CRunning(CRunWatch& watch, const std::string& name, unsigned int job)
    : m_watch(watch), m_entry(watch.Add({std::this_thread::get_id(), name, job, std::nullopt})) {}

CRunWatch::CRunning::~CRunning() {
    m_watch.Remove(m_entry);
}

bool CRunWatch::CRunning::ShowStopping(uint64_t now) {
    const std::lock_guard<std::mutex> guard(m_watch.m_lock);
    m_entry->progress->SetStopping();
    m_entry->progress->Look(now);
    const unsigned int columns = m_watch.m_columns();
    if (columns != 0) {
        m_watch.ShowRow(*m_entry, columns, now);
    }
    return columns != 0;
}

bool CRunWatch::CRunning::IsInnermost() const {
    const std::lock_guard<std::mutex> guard(m_watch.m_lock);
    return std::none_of(m_watch.m_running.begin(), m_entry,
                        [](const CEntry& entry) { return entry.progress.has_value(); });
}

bool CRunWatch::CRunning::IsWaiting() const {
    return CDeviceHold::WaitOf(m_entry->thread).has_value();
}

std::string CRunWatch::CRunning::HowFar(uint64_t now) const {
    const std::lock_guard<std::mutex> guard(m_watch.m_lock);
    m_entry->progress->Look(now);
    const std::string figures = m_entry->progress->Figures();
    const std::string text = OnOneRow(m_note->Text());
    return (figures.empty() ? "" : ", " + figures) + (text.empty() ? "" : ": " + text);
}
