#include "host/terminal.h"

#include <algorithm>

namespace {

constexpr unsigned int ALL_LEVELS = 16;
constexpr unsigned int ONLY_LEVEL_0 = 1;

}  // namespace

void CTerminal::Write(std::string_view text) {
    if (text.empty()) {
        return;
    }
    const std::thread::id self = std::this_thread::get_id();
    const std::lock_guard<std::mutex> guard(m_lock);
    if (m_owner == std::thread::id() || m_owner == self) {
        Put(self, text);
        PutWaiting();
        std::fflush(m_out);
        return;
    }
    const auto mine = std::find_if(m_waiting.begin(), m_waiting.end(),
                                   [self](const CWaiting& w) { return w.thread == self; });
    if (mine == m_waiting.end()) {
        m_waiting.push_back({self, std::string(text)});
    } else {
        mine->text += text;
    }
}

void CTerminal::EndLine() {
    const std::thread::id self = std::this_thread::get_id();
    const std::lock_guard<std::mutex> guard(m_lock);
    if (m_owner == self) {
        Put(self, "\n");
        PutWaiting();
        std::fflush(m_out);
        return;
    }
    for (CWaiting& waiting : m_waiting) {
        if (waiting.thread == self && waiting.text.back() != '\n') {
            waiting.text += '\n';
        }
    }
}

void CTerminal::Put(std::thread::id thread, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), m_out);
    m_owner = text.back() == '\n' ? std::thread::id() : thread;
}

void CTerminal::PutWaiting() {
    while (m_owner == std::thread::id() && !m_waiting.empty()) {
        const CWaiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        Put(next.thread, next.text);
    }
}

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

void CTerminalLog::Write(const CLogRecord& record) {
    const ELogTypes type = LogTypeOf(record.logword);
    if (LogLevelOf(record.logword) >= m_shown_below[type]) {
        return;
    }
    if (type == LOG_LT_PRINT) {
        m_terminal.Write(record.text);
        return;
    }
    m_terminal.EndLine();
    if (!record.text.empty()) {
        m_terminal.Write(record.text.back() == '\n' ? record.text : record.text + '\n');
    }
}
