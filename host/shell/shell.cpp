#include "host/shell/shell.h"

#include <memory>

#include "framework/diag_menu.h"
#include "host/diag_tree.h"
#include "host/exception_text.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/input/word_splitter.h"
#include "host/shell/printable.h"
#include "host/shell/run/node_run.h"
#include "host/shell/run/request.h"
#include "host/shell/usage_error.h"

namespace {

// The words as the operator may have typed them.
std::string Joined(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + Printable(word);
    }
    return line;
}

}  // namespace

CShell::CShell(CDiagMenu& root, CTerminal& terminal, CInterrupt& interrupt)
    : m_root(root),
      m_current_id(root.GetId()),
      m_terminal(terminal),
      m_interrupt(interrupt),
      m_watch(terminal),
      m_jobs(terminal, m_watch) {
    m_watch.Start();
}

CDiagObj& CShell::Current() const {
    CDiagObj* node = FindById(m_root, m_current_id);
    return node != nullptr ? *node : m_root;
}

EExitStatus CShell::Execute(std::string_view line, const std::string& origin) {
    m_origin = origin;
    EExitStatus status = EXIT_PASSED;
    try {
        const CSplitLine split = SplitLine(line);
        if (!split.words.empty()) {
            status = ExecuteWords(split.words, split.background);
        } else if (split.background) {
            throw CUsageError("& needs a command or a test before it");
        }
    } catch (const CUsageError& e) {
        return Refuse(e.what(), origin);
    } catch (...) {
        Refuse(CurrentExceptionText(), origin);
        return EXIT_FAILED;
    }
    m_terminal.EndLine();
    return status;
}

EExitStatus CShell::ExecuteWords(const std::vector<std::string>& words, bool background) {
    const std::vector<std::string> arguments(words.begin() + 1, words.end());
    if (const CBuiltin* builtin = FindBuiltin(words.front())) {
        if (background) {
            throw CUsageError(words.front() + ": & runs commands and tests, not built-ins");
        }
        const CRunWatch::CRunning running(m_watch, Joined(words), nullptr);
        return RunBuiltin(*builtin, *this, arguments);
    }
    CDiagObj& node = NodeAt(words.front());
    if (background) {
        m_jobs.Start(std::make_unique<CNodeRun>(node, arguments, m_origin));
        return EXIT_PASSED;
    }
    return RunInForeground(node, arguments);
}

EExitStatus CShell::Refuse(const std::string& error, const std::string& origin) const {
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

CDiagObj& CShell::NodeAt(const std::string& path) const {
    if (path.empty()) {
        throw CUsageError("an empty word names no node");
    }
    CDiagObj& current = Current();
    if (CDiagObj* node = FindByPath(current, path)) {
        return *node;
    }
    // Go along as far as the path exists, to say where it ends.
    CDiagObj* last = path.front() == '/' ? &m_root : &current;
    std::string missing;
    for (size_t begin = 0; missing.empty(); begin = path.find('/', begin) + 1) {
        const std::string name = path.substr(begin, path.find('/', begin) - begin);
        CDiagObj* next = name.empty() ? last : FindByPath(*last, name);
        if (next == nullptr) {
            missing = name;
        } else {
            last = next;
        }
    }
    throw CUsageError(Printable(path) + ": there is no \"" + Printable(missing) + "\" in " +
                      PathOf(*last) + "; try ls" + (last == &current ? " or help" : ""));
}

EExitStatus CShell::RunInForeground(CDiagObj& node, const std::vector<std::string>& arguments) {
    CNodeRun run(node, arguments, m_origin);
    EResCode code = MSG_ERR_NORESP;
    {
        const CForeground foreground(m_interrupt, [&run] { run.Stop(); });
        const CRunWatch::CRunning running(m_watch, PathOf(node), run.Test());
        code = run.Perform(m_terminal);
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
