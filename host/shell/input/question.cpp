#include "host/shell/input/question.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>

#include "host/shell/input/await_input.h"
#include "host/shell/input/terminal_echo.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"

namespace {

enum class EEnd { LINE, INPUT, INTERRUPTED };

// Byte by byte: what is typed behind the line is for others.
EEnd ReadLine(const CInterrupt& interrupt, std::string& line) {
    while (AwaitInput(STDIN_FILENO, interrupt)) {
        char byte = 0;
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return EEnd::INPUT;
        }
        if (byte == '\n') {
            return EEnd::LINE;
        }
        line += byte;
    }
    return EEnd::INTERRUPTED;
}

// In any case of its letters.
bool IsYes(std::string answer) {
    for (char& c : answer) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return answer == "y" || answer == "yes";
}

}  // namespace

bool CanAsk() {
    return ::isatty(STDIN_FILENO) != 0;
}

EAnswer Ask(CShell& shell, const std::string& question) {
    CTerminal& terminal = shell.Terminal();
    const CEchoedInput echoed;
    terminal.EndLine();
    terminal.BeginPrompt(question);
    std::string line;
    const EEnd end = ReadLine(shell.Interrupt(), line);
    terminal.EndPrompt();
    // On the screen the operator's Enter ended the line; a transcript that goes
    // elsewhere saw nothing of it.
    if (end == EEnd::LINE && ::isatty(STDOUT_FILENO) != 0) {
        terminal.TakeScreenBack(true);
    }
    terminal.EndLine();
    if (end == EEnd::INTERRUPTED) {
        return EAnswer::INTERRUPTED;
    }
    return end == EEnd::LINE && IsYes(line) ? EAnswer::YES : EAnswer::NO;
}
