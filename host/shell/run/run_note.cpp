#include "host/shell/run/run_note.h"

#include <algorithm>

#include "framework/diag_test_base.h"

namespace {

// More than any screen shows of it.
constexpr size_t MAX_TEXT = 1024;
constexpr unsigned int MAX_TRACE_LEVEL = 1;

thread_local CRunNote* t_here = nullptr;

}  // namespace

CRunNote::CRunNote(const CDiagMenu* node) : m_outer(t_here), m_node(node) {
    t_here = this;
}

CRunNote::~CRunNote() {
    t_here = m_outer;
}

void CRunNote::Say(std::string_view text) {
    if (t_here != nullptr) {
        t_here->Set(text);
    }
}

void CRunNote::Count(uint64_t done, uint64_t total) {
    if (t_here != nullptr) {
        const std::lock_guard<std::mutex> guard(t_here->m_lock);
        t_here->m_amount = {done, total};
    }
}

std::string CRunNote::Text() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_text;
}

CRunNote::CAmount CRunNote::Amount() const {
    const CAmount amount = m_node != nullptr ? AmountOf(*m_node) : CAmount();
    const std::lock_guard<std::mutex> guard(m_lock);
    return amount.total != 0 ? amount : m_amount;
}

CRunNote::CAmount CRunNote::AmountOf(const CDiagMenu& node) {
    if (const auto* test = dynamic_cast<const CDiagTestBase*>(&node)) {
        return {test->GetProgressDone(), test->GetProgressTotal()};
    }
    if (const auto* work = dynamic_cast<const CLongWork*>(&node)) {
        return {work->GetProgressDone(), work->GetProgressTotal()};
    }
    return {};
}

CRunNote::ERank CRunNote::RankOf(const CLogRecord& record) const {
    if (LogTypeOf(record.logword) == LOG_LT_PROGRESS) {
        return PROGRESS;
    }
    return record.node != nullptr && record.node == m_node ? OWN_TRACE : OTHERS_TRACE;
}

void CRunNote::Set(std::string_view text) {
    const size_t begin = std::min(text.find_first_not_of("\r\n"), text.size());
    const std::string_view line = text.substr(begin, text.find_first_of("\r\n", begin) - begin);
    if (!line.empty()) {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_text.assign(line.substr(0, MAX_TEXT));
    }
}

bool CRunNote::CCatcher::Takes(unsigned int logword) const {
    if (t_here == nullptr) {
        return false;
    }
    switch (LogTypeOf(logword)) {
        case LOG_LT_PROGRESS:
            return true;
        case LOG_LT_SW_DEBUG_BASE:
            return t_here->m_rank < PROGRESS && LogLevelOf(logword) <= MAX_TRACE_LEVEL;
        default:
            return false;
    }
}

void CRunNote::CCatcher::Write(const CLogRecord& record) {
    // Another sink may have wanted it.
    if (!Takes(record.logword)) {
        return;
    }
    const ERank rank = t_here->RankOf(record);
    if (rank >= t_here->m_rank) {
        t_here->m_rank = rank;
        t_here->Set(record.text);
    }
}
