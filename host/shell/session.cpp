#include "host/shell/session.h"

#include "host/diag_tree.h"
#include "host/shell/input/history.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/script.h"
#include "host/shell/shell.h"

namespace {

// Ends what still runs in the background; what becomes of that counts too.
EExitStatus Leave(CShell& shell, EExitStatus status) {
    const EExitStatus jobs = shell.Jobs().Leave();
    return Worse(status, jobs);
}

// Says once why what is typed is not kept.
void TellTrouble(CShell& shell) {
    if (shell.History() != nullptr) {
        if (const auto trouble = shell.History()->TakeTrouble()) {
            shell.Terminal().WriteError(*trouble + "\n");
        }
    }
}

void Keep(CShell& shell, const std::string& line) {
    if (shell.History() != nullptr) {
        shell.History()->Enter(line);
        TellTrouble(shell);
    }
}

}  // namespace

EExitStatus RunCommands(CShell& shell, const std::vector<std::string>& commands) {
    EExitStatus worst = EXIT_PASSED;
    EExitStatus last = EXIT_PASSED;
    for (size_t i = 0; i < commands.size() && !EndsRun(shell, last); ++i) {
        last = StatusAfter(shell, shell.Execute(commands[i]), "");
        worst = Worse(worst, last);
    }
    return Leave(shell, worst);
}

EExitStatus RunScript(CShell& shell, ILineReader& lines, const std::string& name) {
    return Leave(shell, RunLines(shell, lines, name));
}

EExitStatus RunTerminal(CShell& shell, ILineReader& lines) {
    CInterrupt& interrupt = shell.Interrupt();
    shell.AskOperator();
    TellTrouble(shell);
    std::string line;
    bool at_end = false;
    while (!at_end && !shell.HasQuit() && !shell.IsOutputLost()) {
        interrupt.Clear();
        const ELine result = lines.Read(PathOf(shell.Current()) + "> ", line);
        if (interrupt.IsEnd()) {
            break;
        }
        switch (result) {
            case ELine::READ:
                Keep(shell, line);
                [[fallthrough]];
            case ELine::TOO_LONG:
            case ELine::UNREADABLE:
                CarryOut(shell, result, line, "");
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
