#include "host/shell/input/history_search.h"

#include "host/shell/input/history.h"

std::optional<std::string> CHistorySearch::Older(const std::string& shown, size_t cursor) {
    GoOnFrom(shown, cursor);
    for (size_t line = m_at; line-- > 0;) {
        if (Fits(line)) {
            return Show(line);
        }
    }
    return std::nullopt;
}

std::optional<std::string> CHistorySearch::Newer(const std::string& shown, size_t cursor) {
    GoOnFrom(shown, cursor);
    for (size_t line = m_at + 1; line < m_lines.size(); ++line) {
        if (Fits(line) || line + 1 == m_lines.size()) {
            return Show(line);
        }
    }
    return std::nullopt;
}

void CHistorySearch::GoOnFrom(const std::string& shown, size_t cursor) {
    if (m_shown == shown) {
        return;
    }
    m_lines = m_history.Lines();
    m_at = m_lines.size();
    m_lines.push_back(shown);
    m_prefix = shown.substr(0, cursor);
    m_shown = shown;
}

// A line that is the same as the shown one would seem to be no step.
bool CHistorySearch::Fits(size_t line) const {
    return m_lines[line].starts_with(m_prefix) && m_lines[line] != m_shown;
}

std::optional<std::string> CHistorySearch::Show(size_t line) {
    m_at = line;
    m_shown = m_lines[line];
    return m_shown;
}
