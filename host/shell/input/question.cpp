#include "host/shell/input/question.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"

namespace {

enum class EEnd { LINE, INPUT, INTERRUPTED };

// Waits for input, unless Ctrl-C comes first or came already.
bool Await(const CInterrupt& interrupt) {
    std::array<pollfd, 2> inputs{{{STDIN_FILENO, POLLIN, 0}, {interrupt.Descriptor(), POLLIN, 0}}};
    while (::poll(inputs.data(), inputs.size(), -1) < 0 && errno == EINTR) {
    }
    return inputs[1].revents == 0;
}

// Byte by byte: what is typed behind the line is for others.
EEnd ReadLine(const CInterrupt& interrupt, std::string& line) {
    while (Await(interrupt)) {
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

}  // namespace

bool CanAsk() {
    return ::isatty(STDIN_FILENO) != 0;
}

EAnswer Ask(CShell& shell, const std::string& question) {
    CTerminal& terminal = shell.Terminal();
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
    const bool yes = line == "y" || line == "Y" || line == "yes";
    return end == EEnd::LINE && yes ? EAnswer::YES : EAnswer::NO;
}
