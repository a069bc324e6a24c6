#include "host/shell/session.h"

#include <cerrno>
#include <system_error>

#include "host/diag_tree.h"
#include "host/shell/interrupt.h"
#include "host/shell/line_reader.h"
#include "host/shell/shell.h"

namespace {

constexpr char TOO_LONG[] = "line too long, nothing of it was done";

}  // namespace

EExitStatus RunCommands(CShell& shell, CInterrupt& interrupt,
                        const std::vector<std::string>& commands) {
    EExitStatus status = EXIT_PASSED;
    for (size_t i = 0; i < commands.size() && status == EXIT_PASSED && !shell.HasQuit(); ++i) {
        status = shell.Execute(commands[i]);
        if (interrupt.IsPending()) {
            status = EXIT_ABORTED;
        }
    }
    return status;
}

EExitStatus RunScript(CShell& shell, CInterrupt& interrupt, ILineReader& lines,
                      const std::string& name) {
    EExitStatus status = EXIT_PASSED;
    std::string line;
    for (size_t number = 1; status == EXIT_PASSED && !shell.HasQuit(); ++number) {
        const std::string origin = name + ":" + std::to_string(number);
        switch (lines.Read("", line)) {
            case ELine::READ:
                status = shell.Execute(line, origin);
                break;
            case ELine::TOO_LONG:
                status = shell.Refuse(TOO_LONG, origin);
                break;
            case ELine::INTERRUPTED:
                break;
            case ELine::END:
                return status;
            case ELine::FAILED:
                return shell.Refuse(std::generic_category().message(errno), origin);
        }
        if (interrupt.IsPending()) {
            status = EXIT_ABORTED;
        }
    }
    return status;
}

EExitStatus RunTerminal(CShell& shell, CInterrupt& interrupt, ILineReader& lines) {
    std::string line;
    while (!shell.HasQuit()) {
        interrupt.Clear();
        switch (lines.Read(PathOf(shell.Current()) + "> ", line)) {
            case ELine::READ:
                shell.Execute(line);
                break;
            case ELine::TOO_LONG:
                shell.Refuse(TOO_LONG, "");
                break;
            case ELine::INTERRUPTED:
                break;
            case ELine::END:
            case ELine::FAILED:
                shell.Print("\n");
                return EXIT_PASSED;
        }
    }
    return EXIT_PASSED;
}
