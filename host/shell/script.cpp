#include "host/shell/script.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "host/shell/input/line_reader.h"
#include "host/shell/shell.h"

CScriptFile OpenScript(const std::string& path) {
    CScriptFile file(std::fopen(path.c_str(), "re"));
    struct stat info {};
    if (file != nullptr && ::fstat(::fileno(file.get()), &info) == 0 && S_ISDIR(info.st_mode)) {
        file.reset();
        errno = EISDIR;
    }
    return file;
}

EExitStatus CarryOut(CShell& shell, ELine result, const std::string& line,
                     const std::string& origin) {
    switch (result) {
        case ELine::TOO_LONG:
            return shell.Refuse("line too long, nothing of it was done", origin);
        case ELine::UNREADABLE:
            return shell.Refuse("the ? in the line were no characters, nothing of it was done",
                                origin);
        case ELine::FAILED:
            shell.Refuse(std::generic_category().message(errno), origin);
            return EXIT_HOST;
        default:
            return shell.Execute(line, origin);
    }
}

EExitStatus StatusAfter(CShell& shell, EExitStatus status, const std::string& origin) {
    if (shell.IsOutputLost()) {
        return EXIT_HOST;
    }
    if (shell.IsInterrupted() && status != EXIT_ABORTED) {
        shell.Refuse("aborted", origin);
        return EXIT_ABORTED;
    }
    return status;
}

bool EndsRun(const CShell& shell, EExitStatus status) {
    return shell.HasQuit() || shell.IsInterrupted() || status == EXIT_HOST ||
           (status != EXIT_PASSED && !shell.KeepsGoing());
}

EExitStatus RunLines(CShell& shell, ILineReader& lines, const std::string& name) {
    EExitStatus worst = EXIT_PASSED;
    EExitStatus last = EXIT_PASSED;
    std::string line;
    size_t number = 0;
    do {
        const std::string origin = name + ":" + std::to_string(++number);
        const ELine result = lines.Read("", line);
        if (result == ELine::END && !shell.IsInterrupted()) {
            break;
        }
        // Ctrl-C may come just before the read begins to wait: what it then
        // returns, perhaps half a line, is not run either.
        if (result != ELine::INTERRUPTED && !shell.IsInterrupted()) {
            last = CarryOut(shell, result, line, origin);
        }
        last = StatusAfter(shell, last, origin);
        worst = Worse(worst, last);
    } while (!EndsRun(shell, last));
    return worst;
}
