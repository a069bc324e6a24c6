#include <unistd.h>

#include "host/shell/input/await_input.h"
#include "host/shell/input/line_reader.h"
#include "host/terminal.h"

ELine CPromptReader::Read(const std::string& prompt, std::string& line) {
    m_terminal.BeginPrompt(prompt);
    const ELine result =
        AwaitInput(::fileno(m_in), m_interrupt) ? m_lines.Read("", line) : ELine::INTERRUPTED;
    m_terminal.EndPrompt();
    if (result == ELine::INTERRUPTED) {
        m_terminal.EndLine();
    } else if (::isatty(STDOUT_FILENO) != 0) {
        // On the screen the operator's Enter ended the line; a transcript that goes
        // elsewhere saw nothing of it.
        m_terminal.TakeScreenBack(true);
    }
    return result;
}
