#include "host/shell/shell.h"

#include <memory>
#include <utility>

#include "framework/diag_menu.h"
#include "host/consent.h"
#include "host/diag_clock.h"
#include "host/diag_tree.h"
#include "host/exception_text.h"
#include "host/printable.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/input/command_line.h"
#include "host/shell/input/question.h"
#include "host/shell/node_path.h"
#include "host/shell/run/foreground_stop.h"
#include "host/shell/run/node_run.h"
#include "host/shell/run/request.h"
#include "host/usage_error.h"

namespace {

// The words as the operator may have typed them.
std::string Joined(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + Printable(word);
    }
    return line;
}

// Asks who sits at the prompt. After Ctrl-C nothing is asked any more.
CConsent::CAsk AskAt(CShell& shell) {
    return [&shell](const std::string& what) {
        return !shell.IsInterrupted() && Ask(shell, what + "? [y/N] ") == EAnswer::YES;
    };
}

}  // namespace

CShell::CShell(CDiagMenu& root, CTerminal& terminal, CInterrupt& interrupt, CLogFilter& log_filter)
    : m_root(root),
      m_current_id(root.GetId()),
      m_terminal(terminal),
      m_interrupt(interrupt),
      m_log_filter(log_filter),
      m_recorder(log_filter),
      m_watch(terminal),
      m_jobs(terminal, m_watch, m_recorder, interrupt) {
    m_recorder.AddObserver(m_results);
    m_watch.Start();
}

CDiagObj& CShell::Current() const {
    CDiagObj* node = FindById(m_root, m_current_id);
    return node != nullptr ? *node : m_root;
}

EExitStatus CShell::Execute(std::string_view line, const std::string& origin) {
    const std::string outer = m_origin;
    m_origin = origin;
    EExitStatus worst = EXIT_PASSED;
    try {
        EExitStatus last = EXIT_PASSED;
        for (const CCommand& command : ParseLine(line)) {
            if (!command.after_success || last == EXIT_PASSED) {
                last = ExecuteCommand(command);
                worst = Worse(worst, last);
            }
            if (m_quit || IsInterrupted()) {
                break;
            }
        }
    } catch (const CUsageError& e) {
        CRunRecorder::COpen open(m_recorder, {});
        open.Record().command = Printable(line);
        open.Record().origin = m_origin;
        worst = open.Record().status = ReportError(e.what(), EXIT_USAGE);
    }
    m_terminal.EndLine();
    m_origin = outer;
    return worst;
}

EExitStatus CShell::ExecuteWords(const std::vector<std::string>& words) {
    return ExecuteCommand({words});
}

EExitStatus CShell::ExecuteCommand(const CCommand& command) {
    CRunRecorder::COpen open(m_recorder, {});
    CRunRecord& record = open.Record();
    record.command = Joined(command.words);
    record.arguments.assign(command.words.begin() + 1, command.words.end());
    record.origin = m_origin;
    const CConsent consent(AsksOperatorHere() ? AskAt(*this) : nullptr);
    try {
        record.status = Dispatch(command, open);
    } catch (const CUsageError& e) {
        record.status = ReportError(e.what(), EXIT_USAGE);
    } catch (...) {
        record.status = ReportError(CurrentExceptionText(), EXIT_FAILED);
    }
    m_terminal.EndLine();
    return record.status;
}

EExitStatus CShell::Dispatch(const CCommand& command, CRunRecorder::COpen& open) {
    const std::string& name = command.words.front();
    const std::vector<std::string>& arguments = open.Record().arguments;
    if (const CBuiltin* builtin = FindBuiltin(name)) {
        if (command.background) {
            throw CUsageError(name + ": & runs commands and tests, not built-ins");
        }
        CRunWatch::CRunning running(m_watch, open.Record().command, name, nullptr);
        CForegroundStop stop(m_terminal, running, open.Record().command);
        const CForeground foreground(m_interrupt,
                                     [&stop] { stop.OnInterrupt(GetDiagClock().NowMs()); });
        open.Begin();
        return RunBuiltin(*builtin, *this, arguments);
    }
    CDiagObj& node = NodeAt(name, BuiltinNames());
    if (command.background) {
        m_jobs.Start(std::make_unique<CNodeRun>(node, arguments, m_origin));
        // Its record comes when the job ends.
        open.Drop();
        return EXIT_PASSED;
    }
    return RunInForeground(node, arguments, open);
}

void CShell::Print(const std::string& text) {
    m_recorder.NotePrint(text);
    m_terminal.Write(text);
}

EExitStatus CShell::Refuse(const std::string& error, const std::string& origin) const {
    CRunRecorder::NoteError(error);
    m_terminal.WriteError(origin + (origin.empty() ? "" : ": ") + error + "\n");
    return EXIT_USAGE;
}

EExitStatus CShell::ReportError(const std::string& text, EExitStatus status) const {
    Refuse(text, m_origin);
    return status;
}

EExitStatus CShell::ReportFailure(const CDiagObj& node, const std::string& text,
                                  EExitStatus status) const {
    return ReportError(PathOf(node) + ": " + text, status);
}

CDiagObj& CShell::NodeAt(const std::string& path, const std::vector<std::string>& words) const {
    return FindNode(Current(), path, words);
}

EExitStatus CShell::RunInForeground(CDiagObj& node, const std::vector<std::string>& arguments,
                                    CRunRecorder::COpen& open) {
    CNodeRun run(node, arguments, m_origin);
    run.Describe(open.Record());
    open.Begin();
    EResCode code = MSG_ERR_NORESP;
    {
        CRunWatch::CRunning running(m_watch, PathOf(node), node.GetName(), &run.Node());
        CForegroundStop stop(m_terminal, running, run);
        const CForeground foreground(m_interrupt,
                                     [&stop] { stop.OnInterrupt(GetDiagClock().NowMs()); });
        // What came a moment earlier met nothing that it could stop.
        if (IsInterrupted()) {
            run.Stop();
        }
        code = run.Perform(m_terminal, m_recorder);
    }
    switch (code) {
        case MSG_SUCCESS:
            if (node.GetNodeType() == TPROC) {
                Print(std::string(node.GetName()) + ": passed\n");
            }
            break;
        case MSG_SKIPPED:
            Print(std::string(node.GetName()) + ": skipped\n");
            break;
        default:
            return ReportFailure(node, FailureText(code), StatusOf(code));
    }
    return EXIT_PASSED;
}
