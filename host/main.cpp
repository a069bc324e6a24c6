// diagsh: loads a board and lets an operator or a script work with it.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <memory>
#include <system_error>

#include "host/board_loader.h"
#include "host/diag_log.h"
#include "host/exception_text.h"
#include "host/options.h"
#include "host/shell/interrupt.h"
#include "host/shell/line_reader.h"
#include "host/shell/session.h"
#include "host/shell/shell.h"
#include "host/terminal.h"

namespace {

struct CFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using CFile = std::unique_ptr<std::FILE, CFileCloser>;

// Says what went wrong; `status` is what the program ends with.
int Fail(const std::string& text, EExitStatus status) {
    std::fprintf(stderr, "diagsh: %s\n", text.c_str());
    return status;
}

std::string LastError() {
    return std::generic_category().message(errno);
}

CFile OpenScript(const std::string& path) {
    CFile file(std::fopen(path.c_str(), "re"));
    struct stat info {};
    if (file != nullptr && ::fstat(::fileno(file.get()), &info) == 0 && S_ISDIR(info.st_mode)) {
        file.reset();
        errno = EISDIR;
    }
    return file;
}

void SetLevels(CTerminalLog& log, const COptions& options) {
    for (const COptions::CLogLevel& setting : options.log_levels) {
        if (setting.level.has_value()) {
            log.SetLevel(setting.type, *setting.level);
        } else {
            log.Hide(setting.type);
        }
    }
}

int RunInput(const COptions& options, std::FILE* script, CShell& shell, CInterrupt& interrupt) {
    if (!options.commands.empty()) {
        return RunCommands(shell, interrupt, options.commands);
    }
    if (script != nullptr) {
        CStreamReader lines(script);
        return RunScript(shell, interrupt, lines, options.script);
    }
    if (::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0) {
        const std::unique_ptr<ILineReader> lines = MakeTerminalReader();
        return RunTerminal(shell, interrupt, *lines);
    }
    CStreamReader lines(stdin);
    return RunScript(shell, interrupt, lines, "stdin");
}

int Run(int argc, const char* const* argv) {
    std::setlocale(LC_CTYPE, "");
    int status = EXIT_PASSED;
    const std::optional<COptions> options = ReadOptions(argc, argv, status);
    if (!options.has_value()) {
        return status;
    }
    CFile script;
    if (!options->script.empty()) {
        script = OpenScript(options->script);
        if (script == nullptr) {
            return Fail(options->script + ": " + LastError(), EXIT_USAGE);
        }
    }

    CTerminal terminal(stdout);
    CTerminalLog log(terminal);
    SetLevels(log, *options);
    CDiagLog::Instance().AddSink(log);

    const std::unique_ptr<CDiagMenu> root = LoadBoard(options->board, options->board_arguments);
    CInterrupt interrupt;
    CShell shell(*root, terminal, interrupt);
    status = RunInput(*options, script.get(), shell, interrupt);
    CDiagLog::Instance().RemoveSink(log);
    if (std::fflush(stdout) != 0) {
        return Fail("standard output: " + LastError(), EXIT_HOST);
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
