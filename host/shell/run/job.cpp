#include "host/shell/run/job.h"

#include <chrono>
#include <utility>

#include "framework/diag_log_word.h"
#include "framework/diag_test_base.h"
#include "host/diag_clock.h"
#include "host/exception_text.h"
#include "host/log_flood.h"
#include "host/shell/duration_text.h"
#include "host/shell/run/progress_line.h"
#include "host/shell/run/quiet_thread.h"
#include "host/shell/run/request.h"
#include "host/shell/run/run_recorder.h"
#include "host/shell/run/run_watch.h"
#include "host/terminal.h"

namespace {

std::string ResultText(EResCode code) {
    switch (code) {
        case MSG_SUCCESS:
            return "passed";
        case MSG_SKIPPED:
            return "skipped";
        default:
            return FailureText(code);
    }
}

}  // namespace

CJob::CJob(unsigned int number, std::unique_ptr<CNodeRun> run, CTerminal& terminal,
           CRunWatch& watch, CRunRecorder& recorder)
    : m_number(number),
      m_run(std::move(run)),
      m_terminal(terminal),
      m_watch(watch),
      m_recorder(recorder),
      m_began(GetDiagClock().NowMs()) {
    m_terminal.Write(Line("started"));
    try {
        m_thread = StartQuietThread([this] { Run(); });
    } catch (...) {
        m_terminal.Write(Line("could not be started after all"));
        throw;
    }
}

CJob::~CJob() {
    m_thread.join();
}

void CJob::Run() {
    EResCode code = MSG_ERR_FAIL;
    {
        const CTerminal::CPrefix prefix(m_terminal, "[" + std::to_string(m_number) + "] ");
        const CRunWatch::CRunning running(m_watch, m_run->Title(), m_number);
        CRunRecorder::COpen open(m_recorder, {});
        m_run->Describe(open.Record());
        open.Record().job = m_number;
        open.Begin();
        try {
            const CLogFlood::CScope flood;
            code = m_run->Perform(m_terminal, m_recorder);
        } catch (...) {
            m_run->Node().SendLog(LW_ERR_SW, "%s", CurrentExceptionText().c_str());
        }
        open.Record().status = StatusOf(code);
        Tell(code);
    }
    const std::lock_guard<std::mutex> guard(m_lock);
    m_code = code;
    m_ended = GetDiagClock().NowMs();
    m_changed.notify_all();
}

void CJob::Tell(EResCode code) {
    if (StatusOf(code) == EXIT_PASSED) {
        m_terminal.EndLine();
        m_terminal.Write(m_run->Title() + ": " + ResultText(code) + "\n");
    } else {
        m_run->PrintError(m_terminal, m_run->Title(), ResultText(code));
    }
}

std::optional<EExitStatus> CJob::Result() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_code.has_value() ? std::optional(StatusOf(*m_code)) : std::nullopt;
}

std::string CJob::Line(const std::string& state) const {
    return "[" + std::to_string(m_number) + "] " + m_run->Title() + ": " + state + "\n";
}

std::string CJob::Description() const {
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        if (m_code.has_value()) {
            return Line(ResultText(*m_code) + ", " +
                        ClockText(std::chrono::milliseconds(m_ended - m_began)));
        }
    }
    return Line(State() + ", " +
                ClockText(std::chrono::milliseconds(GetDiagClock().NowMs() - m_began)));
}

std::string CJob::State() const {
    const std::optional<std::string> wait = m_watch.WaitOf(m_thread.get_id());
    if (wait.has_value() && !m_stop_requested) {
        return *wait;
    }
    const std::string state = m_stop_requested ? "stopping" : "running";
    const std::string percent = PercentOf(CRunNote::AmountOf(m_run->Node()));
    return percent.empty() ? state : state + " " + percent;
}

void CJob::Stop() {
    const bool waits = m_watch.WaitOf(m_thread.get_id()).has_value();
    const bool stoppable = waits || m_run->CanStop();
    // Said before it is done, or the end could come first.
    if (stoppable) {
        m_stop_requested = true;
        m_terminal.Write(Line("stopping"));
    }
    const bool understood = m_run->Stop();
    if (understood && !stoppable) {
        m_stop_requested = true;
        m_terminal.Write(Line("stopping"));
    } else if (!understood && !waits && !Result().has_value()) {
        m_terminal.Write(Line("cannot be stopped, it goes on to its end"));
    }
}

bool CJob::Await(const std::function<bool()>& give_up) {
    std::unique_lock<std::mutex> guard(m_lock);
    m_changed.wait(guard, [&] { return m_code.has_value() || give_up(); });
    return m_code.has_value();
}

void CJob::WakeAwaiting() {
    // Under the lock, so that nobody is between the look and the sleep.
    const std::lock_guard<std::mutex> guard(m_lock);
    m_changed.notify_all();
}
