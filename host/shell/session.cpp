#include "host/shell/session.h"

#include <cerrno>
#include <system_error>

#include "host/diag_tree.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"

namespace {

// Carries out the line that a read gave, or says why nothing of it was done.
EExitStatus Carry(CShell& shell, ELine result, const std::string& line, const std::string& origin) {
    switch (result) {
        case ELine::TOO_LONG:
            return shell.Refuse("line too long, nothing of it was done", origin);
        case ELine::UNREADABLE:
            return shell.Refuse("the ? in the line were no characters, nothing of it was done",
                                origin);
        default:
            return shell.Execute(line, origin);
    }
}

// What a run ends with after a line that ended with `status`.
EExitStatus StatusAfter(EExitStatus status, const CShell& shell, const CInterrupt& interrupt,
                        const std::string& origin) {
    if (shell.Terminal().Error() != 0) {
        return EXIT_HOST;
    }
    if (interrupt.IsPending() && status != EXIT_ABORTED) {
        shell.Refuse("aborted", origin);
        return EXIT_ABORTED;
    }
    return status;
}

// Ends what still runs in the background. A run that passed so far ends with
// what became of that.
EExitStatus Leave(CShell& shell, EExitStatus status) {
    const EExitStatus jobs = shell.Jobs().Leave();
    return status == EXIT_PASSED ? jobs : status;
}

EExitStatus RunLines(CShell& shell, CInterrupt& interrupt, ILineReader& lines,
                     const std::string& name) {
    EExitStatus status = EXIT_PASSED;
    std::string line;
    for (size_t number = 1; status == EXIT_PASSED && !shell.HasQuit(); ++number) {
        const std::string origin = name + ":" + std::to_string(number);
        const ELine result = lines.Read("", line);
        // Ctrl-C may come just before the read begins to wait: what it then
        // returns, perhaps half a line, is not run either.
        switch (interrupt.IsPending() ? ELine::INTERRUPTED : result) {
            case ELine::READ:
            case ELine::TOO_LONG:
            case ELine::UNREADABLE:
                status = Carry(shell, result, line, origin);
                break;
            case ELine::INTERRUPTED:
                break;
            case ELine::END:
                return status;
            case ELine::FAILED:
                return shell.Refuse(std::generic_category().message(errno), origin);
        }
        status = StatusAfter(status, shell, interrupt, origin);
    }
    return status;
}

}  // namespace

EExitStatus RunCommands(CShell& shell, CInterrupt& interrupt,
                        const std::vector<std::string>& commands) {
    EExitStatus status = EXIT_PASSED;
    for (size_t i = 0; i < commands.size() && status == EXIT_PASSED && !shell.HasQuit(); ++i) {
        status = StatusAfter(shell.Execute(commands[i]), shell, interrupt, "");
    }
    return Leave(shell, status);
}

EExitStatus RunScript(CShell& shell, CInterrupt& interrupt, ILineReader& lines,
                      const std::string& name) {
    return Leave(shell, RunLines(shell, interrupt, lines, name));
}

EExitStatus RunTerminal(CShell& shell, CInterrupt& interrupt, ILineReader& lines) {
    std::string line;
    bool at_end = false;
    while (!at_end && !shell.HasQuit() && shell.Terminal().Error() == 0) {
        interrupt.Clear();
        const ELine result = lines.Read(PathOf(shell.Current()) + "> ", line);
        if (interrupt.IsEnd()) {
            break;
        }
        switch (result) {
            case ELine::READ:
            case ELine::TOO_LONG:
            case ELine::UNREADABLE:
                Carry(shell, result, line, "");
                break;
            case ELine::INTERRUPTED:
                break;
            case ELine::END:
            case ELine::FAILED:
                shell.Print("\n");
                at_end = true;
                break;
        }
    }
    shell.Jobs().Leave();
    return interrupt.IsEnd() ? EXIT_ABORTED : EXIT_PASSED;
}
