// The operator's shell: carries out one line at a time on the object tree.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/diag_obj.h"
#include "host/shell/exit_status.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/run/jobs.h"
#include "host/shell/run/run_recorder.h"
#include "host/shell/run/run_watch.h"
#include "host/shell/run/test_results.h"
#include "host/terminal.h"

class CDiagMenu;
class CHistory;
class CLogFilter;
struct CCommand;

class CShell {
  public:
    CShell(CDiagMenu& root, CTerminal& terminal, CInterrupt& interrupt, CLogFilter& log_filter);

    // Carries out the commands of one line and returns the worst of their
    // results. Errors are printed to standard error, behind `origin` if there is
    // one ("script.txt:3").
    EExitStatus Execute(std::string_view line, const std::string& origin = "");
    // Carries out one command, given as its words; as part of another one.
    EExitStatus ExecuteWords(const std::vector<std::string>& words);
    // Reports input that is no line.
    EExitStatus Refuse(const std::string& error, const std::string& origin) const;
    // Whether "quit" was given.
    bool HasQuit() const { return m_quit; }
    // Whether what it writes arrives no more.
    bool IsOutputLost() const { return m_terminal.Error() != 0 || m_recorder.IsLost(); }
    // Has scripts go on after a failure.
    void KeepGoing() { m_keep_going = true; }
    bool KeepsGoing() const { return m_keep_going; }
    // Has the commands of lines that were typed ask the operator for consent.
    void AskOperator() { m_asks_operator = true; }

    // What the built-ins work on.
    // The node in the prompt; the top when that node is gone.
    CDiagObj& Current() const;
    void SetCurrent(const CDiagObj& node) { m_current_id = node.GetId(); }
    // Whether Ctrl-C came; what runs long looks at it.
    bool IsInterrupted() const { return m_interrupt.IsPending(); }
    CInterrupt& Interrupt() const { return m_interrupt; }
    void Quit() { m_quit = true; }
    CTerminal& Terminal() const { return m_terminal; }
    CLogFilter& LogFilter() const { return m_log_filter; }
    // The node at `path`, as FindNode() finds it from the node in the prompt on.
    CDiagObj& NodeAt(const std::string& path, const std::vector<std::string>& words = {}) const;
    void Print(const std::string& text);
    // Where the line that is carried out stands.
    const std::string& Origin() const { return m_origin; }
    CRunRecorder& Recorder() { return m_recorder; }
    CTestResults& Results() { return m_results; }
    CJobs& Jobs() { return m_jobs; }
    const CJobs& Jobs() const { return m_jobs; }

    // What was typed; null where lines come from elsewhere.
    CHistory* History() const { return m_history; }
    void SetHistory(CHistory* history) { m_history = history; }

    // Prints an error and returns `status`.
    EExitStatus ReportError(const std::string& text, EExitStatus status) const;
    // Prints that `node` failed and returns `status`.
    EExitStatus ReportFailure(const CDiagObj& node, const std::string& text,
                              EExitStatus status) const;

  private:
    bool AsksOperatorHere() const { return m_asks_operator && m_origin.empty(); }
    EExitStatus ExecuteCommand(const CCommand& command);
    EExitStatus Dispatch(const CCommand& command, CRunRecorder::COpen& open);
    EExitStatus RunInForeground(CDiagObj& node, const std::vector<std::string>& arguments,
                                CRunRecorder::COpen& open);

    CDiagObj& m_root;
    unsigned int m_current_id;
    CTerminal& m_terminal;
    CInterrupt& m_interrupt;
    CLogFilter& m_log_filter;
    std::string m_origin;
    bool m_quit = false;
    bool m_keep_going = false;
    bool m_asks_operator = false;
    CHistory* m_history = nullptr;
    CTestResults m_results;
    CRunRecorder m_recorder;
    CRunWatch m_watch;
    CJobs m_jobs;
};
