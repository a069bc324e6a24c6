#include <algorithm>
#include <string>
#include <string_view>

#include "host/printable.h"
#include "host/terminal.h"

namespace {

EColour ColourOf(ELogTypes type) {
    switch (type) {
        case LOG_LT_ERR_TEST:
        case LOG_LT_ERR_SYS:
        case LOG_LT_ERR_SW:
            return EColour::RED;
        case LOG_LT_WARN:
            return EColour::YELLOW;
        default:
            return EColour::NONE;
    }
}

// A text may hold what a chip holds. Its lines and tabs are the shell's; nothing else in it
// shall act on a terminal.
std::string Safe(std::string_view text) {
    std::string safe;
    while (!text.empty()) {
        const size_t length = text.find_first_of("\n\t");
        safe += Printable(text.substr(0, length));
        text.remove_prefix(std::min(length, text.size()));
        if (!text.empty()) {
            safe += text.front();
            text.remove_prefix(1);
        }
    }
    return safe;
}

}  // namespace

CTerminalLog::CTerminalLog(CTerminal& terminal, const CLogFilter& filter)
    : m_terminal(terminal), m_filter(filter) {}

void CTerminalLog::Write(const CLogRecord& record) {
    if (!Takes(record.logword)) {
        return;
    }
    std::string text = Safe(record.text);
    if (LogTypeOf(record.logword) == LOG_LT_PRINT) {
        m_terminal.Write(text);
        return;
    }
    m_terminal.EndLine();
    if (!text.empty()) {
        m_terminal.WriteLines(text.back() == '\n' ? text : text + '\n',
                              ColourOf(LogTypeOf(record.logword)));
    }
}
