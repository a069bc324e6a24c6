// The operator's shell: carries out one line at a time on the object tree.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/diag_obj.h"
#include "host/shell/exit_status.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/run/jobs.h"
#include "host/shell/run/run_watch.h"
#include "host/terminal.h"

class CDiagMenu;

class CShell {
  public:
    CShell(CDiagMenu& root, CTerminal& terminal, CInterrupt& interrupt);

    // Carries out one line. Errors are printed to standard error, behind
    // `origin` if there is one ("script.txt:3").
    EExitStatus Execute(std::string_view line, const std::string& origin = "");
    // Reports input that is no line.
    EExitStatus Refuse(const std::string& error, const std::string& origin) const;
    // Whether "quit" was given.
    bool HasQuit() const { return m_quit; }

    // What the built-ins work on.
    // The node in the prompt; the top when that node is gone.
    CDiagObj& Current() const;
    void SetCurrent(const CDiagObj& node) { m_current_id = node.GetId(); }
    // Whether Ctrl-C came; what runs long looks at it.
    bool IsInterrupted() const { return m_interrupt.IsPending(); }
    CInterrupt& Interrupt() const { return m_interrupt; }
    void Quit() { m_quit = true; }
    CTerminal& Terminal() const { return m_terminal; }
    // The node at `path`; throws CUsageError that says how far the path goes.
    CDiagObj& NodeAt(const std::string& path) const;
    void Print(const std::string& text) const { m_terminal.Write(text); }
    CJobs& Jobs() { return m_jobs; }
    const CJobs& Jobs() const { return m_jobs; }

    // Prints an error and returns `status`.
    EExitStatus ReportError(const std::string& text, EExitStatus status) const;
    // Prints that `node` failed and returns `status`.
    EExitStatus ReportFailure(const CDiagObj& node, const std::string& text,
                              EExitStatus status) const;

  private:
    EExitStatus ExecuteWords(const std::vector<std::string>& words, bool background);
    EExitStatus RunInForeground(CDiagObj& node, const std::vector<std::string>& arguments);

    CDiagObj& m_root;
    unsigned int m_current_id;
    CTerminal& m_terminal;
    CInterrupt& m_interrupt;
    std::string m_origin;
    bool m_quit = false;
    CRunWatch m_watch;
    CJobs m_jobs;
};
