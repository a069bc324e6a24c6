#include <algorithm>

#include "host/terminal.h"

namespace {

constexpr unsigned int ALL_LEVELS = 16;
constexpr unsigned int ONLY_LEVEL_0 = 1;

}  // namespace

CTerminalLog::CTerminalLog(CTerminal& terminal) : m_terminal(terminal) {
    for (auto& below : m_shown_below) {
        below = ALL_LEVELS;
    }
    m_shown_below[LOG_LT_HW_DEBUG_BASE] = ONLY_LEVEL_0;
    m_shown_below[LOG_LT_SW_DEBUG_BASE] = ONLY_LEVEL_0;
}

void CTerminalLog::SetLevel(ELogTypes type, unsigned int level) {
    m_shown_below.at(type) = std::min(level, ALL_LEVELS - 1) + 1;
}

void CTerminalLog::Hide(ELogTypes type) {
    m_shown_below.at(type) = 0;
}

bool CTerminalLog::Takes(unsigned int logword) const {
    return LogLevelOf(logword) < m_shown_below[LogTypeOf(logword)];
}

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
        m_terminal.Write(record.text.back() == '\n' ? record.text : record.text + '\n');
    }
}
