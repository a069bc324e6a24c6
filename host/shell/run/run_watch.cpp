#include "host/shell/run/run_watch.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "host/device_lock.h"
#include "host/diag_clock.h"
#include "host/diag_tree.h"
#include "host/shell/run/progress_line.h"
#include "host/shell/run/quiet_thread.h"
#include "host/terminal.h"

namespace {

constexpr std::chrono::milliseconds LOOK_EVERY{100};

}  // namespace

struct CRunWatch::CEntry {
    std::thread::id thread;
    std::string name;
    unsigned int job = 0;                     // 0 in the foreground
    std::unique_ptr<CProgressLine> progress;  // of a test in the foreground
    std::optional<uint64_t> waiting_since;
    bool wait_told = false;
};

CRunWatch::CRunWatch(CTerminal& terminal) : m_terminal(terminal) {}

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
    for (CEntry& entry : m_running) {
        LookAtWait(entry, now);
        if (entry.progress != nullptr) {
            entry.progress->Update(now);
        }
    }
    m_terminal.ShowOpenLine();
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
    m_running.push_back(std::move(entry));
    if (was_idle) {
        m_changed.notify_all();
    }
    return std::prev(m_running.end());
}

void CRunWatch::Remove(std::list<CEntry>::iterator entry) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_running.erase(entry);
}

CRunWatch::CRunning::CRunning(CRunWatch& watch, const std::string& name, const CDiagTestBase* test)
    : m_watch(watch) {
    CEntry entry{std::this_thread::get_id(), name, 0, nullptr, std::nullopt, false};
    if (test != nullptr) {
        entry.progress = std::make_unique<CProgressLine>(
            watch.m_terminal, *test, [&terminal = watch.m_terminal] { return terminal.Columns(); });
    }
    m_entry = watch.Add(std::move(entry));
}

CRunWatch::CRunning::CRunning(CRunWatch& watch, const std::string& name, unsigned int job)
    : m_watch(watch),
      m_entry(
          watch.Add(CEntry{std::this_thread::get_id(), name, job, nullptr, std::nullopt, false})) {}

CRunWatch::CRunning::~CRunning() {
    m_watch.Remove(m_entry);
}
