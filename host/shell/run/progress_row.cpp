#include "host/shell/run/progress_row.h"

#include <algorithm>
#include <utility>

#include "host/shell/screen_text.h"

namespace {

// Less of a text says nothing.
constexpr size_t SHORTEST_TEXT = 8;

}  // namespace

CProgressRow::CProgressRow(std::string name, std::string text)
    : m_name(std::move(name)), m_text(std::move(text)) {}

std::string CProgressRow::Whole() const {
    return Head() + m_text;
}

std::string CProgressRow::Within(size_t columns) && {
    const auto fits = [&](size_t text) { return ColumnsOf(Head()) + text <= columns; };
    if (!m_text.empty() && !fits(std::min(ColumnsOf(m_text), SHORTEST_TEXT))) {
        m_text.clear();
    }
    for (unsigned int part = RATE; part < PARTS && !fits(0); ++part) {
        m_parts.at(part).clear();
    }
    return CutToColumns(Whole(), columns);
}

// All before the text.
std::string CProgressRow::Head() const {
    std::string head = m_parts[BAR] + (m_parts[BAR].empty() ? "" : " ") + m_name;
    const char* separator = ": ";
    for (const EPart part : {STATE, TIME, PERCENT, COUNT, RATE, LEFT}) {
        if (!m_parts.at(part).empty()) {
            head += separator + m_parts.at(part);
            separator = ", ";
        }
    }
    return m_text.empty() ? head : head + separator;
}
