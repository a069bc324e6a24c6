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

}  // namespace

CTerminalLog::CTerminalLog(CTerminal& terminal, const CLogFilter& filter)
    : m_terminal(terminal), m_filter(filter) {}

void CTerminalLog::Write(const CLogRecord& record) {
    if (!Takes(record.logword)) {
        return;
    }
    if (LogTypeOf(record.logword) == LOG_LT_PRINT) {
        m_terminal.Write(record.text);
        return;
    }
    m_terminal.EndLine();
    if (!record.text.empty()) {
        m_terminal.WriteLines(record.text.back() == '\n' ? record.text : record.text + '\n',
                              ColourOf(LogTypeOf(record.logword)));
    }
}
