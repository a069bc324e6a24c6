#include "host/shell/run/jobs.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "host/diag_clock.h"
#include "host/shell/run/foreground_stop.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/run/run_note.h"
#include "host/shell/run/run_watch.h"
#include "host/terminal.h"

namespace {

// What a job means to those who never asked for its result. One that the
// operator stopped ended as he wanted.
EExitStatus UntoldResult(const CJob& job) {
    const EExitStatus result = job.Result().value_or(EXIT_PASSED);
    const bool wanted = result == EXIT_ABORTED && job.IsStopRequested();
    return job.IsCollected() || wanted ? EXIT_PASSED : result;
}

}  // namespace

CJobs::~CJobs() {
    Leave();
}

void CJobs::Start(std::unique_ptr<CNodeRun> run) {
    ForgetOldest();
    m_jobs.push_back(
        std::make_unique<CJob>(++m_last_number, std::move(run), m_terminal, m_watch, m_recorder));
}

CJob* CJobs::Find(unsigned int number) const {
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(),
                                    [number](const auto& job) { return job->Number() == number; });
    return found == m_jobs.end() ? nullptr : found->get();
}

EExitStatus CJobs::Await(const std::vector<CJob*>& jobs, CInterrupt& interrupt) {
    EExitStatus worst = EXIT_PASSED;
    for (CJob* job : jobs) {
        CRunNote::Say("awaiting job " + std::to_string(job->Number()));
        const CForeground foreground(interrupt, [job] { job->WakeAwaiting(); });
        if (!job->Await([&interrupt] { return interrupt.IsPending(); })) {
            return EXIT_ABORTED;
        }
        job->Collect();
        worst = Worse(worst, *job->Result());
    }
    return worst;
}

EExitStatus CJobs::Leave() {
    EExitStatus worst = std::exchange(m_forgotten, EXIT_PASSED);
    std::vector<CJob*> running;
    for (const auto& job : m_jobs) {
        worst = Worse(worst, UntoldResult(*job));
        if (!job->Result().has_value()) {
            running.push_back(job.get());
        }
    }
    if (!running.empty()) {
        m_terminal.EndLine();
        m_terminal.Write("leaving: " + std::to_string(running.size()) +
                         (running.size() == 1 ? " job is" : " jobs are") +
                         " asked to stop and awaited; Ctrl-C tells how far\n");
    }
    std::vector<CJob*> cut_short;
    for (CJob* job : running) {
        if (!job->IsStopRequested()) {
            job->Stop();
            cut_short.push_back(job);
        }
    }
    AwaitEnds(running);
    for (CJob* job : running) {
        const bool cut = std::find(cut_short.begin(), cut_short.end(), job) != cut_short.end();
        worst = Worse(worst, cut ? *job->Result() : UntoldResult(*job));
    }
    m_jobs.clear();
    return worst;
}

void CJobs::AwaitEnds(const std::vector<CJob*>& running) {
    if (running.empty()) {
        return;
    }
    const CRunWatch::CRunning watched(m_watch, "leaving", "leaving", nullptr);
    std::optional<uint64_t> told;
    const CForeground foreground(m_interrupt, [&] {
        const uint64_t now = GetDiagClock().NowMs();
        if (told.has_value() && now - *told < CForegroundStop::TELL_EVERY_MS) {
            return;
        }
        told = now;
        for (const CJob* job : running) {
            if (!job->Result().has_value()) {
                m_terminal.Write(job->Description());
            }
        }
    });
    for (CJob* job : running) {
        CRunNote::Say("awaiting job " + std::to_string(job->Number()));
        job->Await([] { return false; });
    }
}

void CJobs::ForgetOldest() {
    const auto ended = std::count_if(m_jobs.begin(), m_jobs.end(),
                                     [](const auto& job) { return job->Result().has_value(); });
    if (static_cast<size_t>(ended) < KEPT) {
        return;
    }
    const auto oldest = std::find_if(m_jobs.begin(), m_jobs.end(),
                                     [](const auto& job) { return job->Result().has_value(); });
    m_forgotten = Worse(m_forgotten, UntoldResult(**oldest));
    m_jobs.erase(oldest);
}
