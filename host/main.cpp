// diagsh: loads a board and lets an operator or a script work with it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

#include "host/board_loader.h"
#include "host/diag_log.h"
#include "host/exception_text.h"
#include "host/options.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
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
    if (::isatty(STDIN_FILENO) != 0) {
        // The transcript may go elsewhere, as in "diagsh | tee session.log".
        const std::unique_ptr<ILineReader> lines =
            ::isatty(STDOUT_FILENO) != 0
                ? MakeTerminalReader(interrupt, shell.Terminal())
                : std::make_unique<CStreamReader>(stdin, &shell.Terminal());
        return RunTerminal(shell, interrupt, *lines);
    }
    CStreamReader lines(stdin);
    return RunScript(shell, interrupt, lines, "stdin");
}

// Occupies the standard descriptors that the caller left closed, or files opened
// later would be taken for them. Reading ends at once, writing fails.
void OccupyStandardDescriptors() {
    int fd = 0;
    do {
        fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    } while (fd >= 0 && fd <= STDERR_FILENO);
    if (fd >= 0) {
        ::close(fd);
    }
}

int Run(int argc, const char* const* argv) {
    OccupyStandardDescriptors();
    // A reader that went away is an error of the output, not the end of a test
    // that has yet to restore what it wrote.
    std::signal(SIGPIPE, SIG_IGN);
    // A plain C locale knows no characters beyond ASCII, and operators type them.
    if (std::setlocale(LC_CTYPE, "") == nullptr || MB_CUR_MAX == 1) {
        std::setlocale(LC_CTYPE, "C.UTF-8");
    }
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
    const CLogSinkScope sink(log);

    const std::unique_ptr<CDiagMenu> root = LoadBoard(options->board, options->board_arguments);
    CInterrupt interrupt;
    CShell shell(*root, terminal, interrupt);
    status = RunInput(*options, script.get(), shell, interrupt);
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
