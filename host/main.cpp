// diagsh: loads a board and lets an operator or a script work with it.
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

#include "host/board_loader.h"
#include "host/consent.h"
#include "host/diag_log.h"
#include "host/exception_text.h"
#include "host/log_filter.h"
#include "host/log_flood.h"
#include "host/options.h"
#include "host/reports.h"
#include "host/shell/input/history.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/script.h"
#include "host/shell/session.h"
#include "host/shell/shell.h"
#include "host/standard_streams.h"
#include "host/terminal.h"
#include "host/usage_error.h"

namespace {

// Says what went wrong; `status` is what the program ends with.
int Fail(const std::string& text, EExitStatus status) {
    std::fprintf(stderr, "diagsh: %s\n", text.c_str());
    return status;
}

std::string LastError() {
    return std::generic_category().message(errno);
}

int Decode(const CDecodeOptions& options) {
    try {
        return RunDecode(options, stdout);
    } catch (const CUsageError& e) {
        return Fail(e.what(), EXIT_USAGE);
    }
}

int RunInput(const COptions& options, std::FILE* script, CShell& shell) {
    if (!options.commands.empty()) {
        return RunCommands(shell, options.commands);
    }
    if (script != nullptr) {
        CStreamReader lines(script);
        return RunScript(shell, lines, options.script);
    }
    if (::isatty(STDIN_FILENO) != 0) {
        CHistory history(DefaultHistoryFile());
        shell.SetHistory(&history);
        // The transcript may go elsewhere, as in "diagsh | tee session.log", or to a
        // terminal on which no line can be edited.
        const bool can_edit = shell.Terminal().Columns() != 0 && !options.json;
        const std::unique_ptr<ILineReader> lines =
            can_edit ? MakeTerminalReader(shell, history)
                     : std::make_unique<CPromptReader>(stdin, shell.Terminal(), shell.Interrupt());
        const EExitStatus status = RunTerminal(shell, *lines);
        shell.SetHistory(nullptr);
        return status;
    }
    CStreamReader lines(stdin);
    return RunScript(shell, lines, "stdin");
}

int Run(int argc, const char* const* argv) {
    OccupyStandardDescriptors();
    // A reader that went away is an error of the output, not the end of a test
    // that has yet to restore what it wrote.
    std::signal(SIGPIPE, SIG_IGN);
    // So is a file that may not grow any more.
    std::signal(SIGXFSZ, SIG_IGN);
    // A plain C locale knows no characters beyond ASCII, and operators type them.
    if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
    int status = EXIT_PASSED;
    const std::optional<COptions> options = ReadOptions(argc, argv, status);
    if (!options.has_value()) {
        return status;
    }
    if (options->decode.has_value()) {
        return Decode(*options->decode);
    }
    CScriptFile script;
    if (!options->script.empty()) {
        script = OpenScript(options->script);
        if (script == nullptr) {
            return Fail(options->script + ": " + LastError(), EXIT_USAGE);
        }
    }

    // Before the terminal looks what standard output is.
    CStream json = options->json ? TakeStandardOutput() : nullptr;
    CTerminal terminal(stdout);
    CReports reports(*options, std::move(json));
    CLogFilter filter;
    Apply(options->log_settings, filter);
    filter.KeepAsDefaults();
    CTerminalLog log(terminal, filter);
    // A pipe or a file is read later, and whole.
    CLogFlood flood(log);
    const CLogSinkScope sink(terminal.Columns() != 0 ? static_cast<ILogSink&>(flood) : log);
    reports.OpenLogFile(terminal);
    const std::unique_ptr<CDiagMenu> root = LoadBoard(options->board, options->board_arguments);
    CInterrupt interrupt;
    CShell shell(*root, terminal, interrupt, filter);
    reports.Attach(shell.Recorder());
    if (options->force) {
        CConsent::GrantAll();
    }
    if (options->keep_going) {
        shell.KeepGoing();
    }
    status = RunInput(*options, script.get(), shell);
    reports.Finish();
    if (terminal.Error() != 0) {
        return Fail("standard output: " + std::generic_category().message(terminal.Error()),
                    EXIT_HOST);
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (...) {
        return Fail(CurrentExceptionText(), EXIT_HOST);
    }
}
