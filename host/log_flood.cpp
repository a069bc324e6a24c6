#include "host/log_flood.h"

#include "host/diag_clock.h"

namespace {

constexpr uint64_t SECOND_MS = 1000;

thread_local CLogFlood::CScope* t_scope = nullptr;

bool IsErrorOrWarning(unsigned int logword) {
    switch (LogTypeOf(logword)) {
        case LOG_LT_ERR_TEST:
        case LOG_LT_ERR_SYS:
        case LOG_LT_ERR_SW:
        case LOG_LT_WARN:
            return true;
        default:
            return false;
    }
}

}  // namespace

CLogFlood::CScope::CScope() {
    t_scope = this;
}

CLogFlood::CScope::~CScope() {
    t_scope = nullptr;
    if (m_flood != nullptr) {
        m_flood->Tell(*this);
    }
}

void CLogFlood::Write(const CLogRecord& record) {
    if (!Takes(record.logword)) {
        return;
    }
    if (t_scope == nullptr || !IsErrorOrWarning(record.logword) || IsShown(*t_scope, record)) {
        m_sink.Write(record);
    }
}

bool CLogFlood::IsShown(CScope& scope, const CLogRecord& record) {
    const uint64_t now = GetDiagClock().NowMs();
    if (scope.m_flood != nullptr) {
        const uint64_t elapsed = now - scope.m_told;
        const bool over = (scope.m_left_out + 1) * SECOND_MS < LINES_PER_SECOND * elapsed;
        if (elapsed < TELL_EVERY_MS || !over) {
            ++scope.m_left_out;
            scope.m_last = record;
            if (elapsed >= TELL_EVERY_MS) {
                Tell(scope);
                scope.m_told = now;
            }
            return false;
        }
        Tell(scope);
        scope.m_flood = nullptr;
        scope.m_lines = 0;
    }
    if (scope.m_lines == 0 || now - scope.m_second_began >= SECOND_MS) {
        scope.m_second_began = now;
        scope.m_lines = 0;
    }
    if (++scope.m_lines <= LINES_PER_SECOND) {
        return true;
    }
    m_sink.Write(
        {record.logword, record.node,
         "too many errors: from here on they are only counted; a log file gets them all\n"});
    scope.m_flood = this;
    scope.m_told = now;
    scope.m_left_out = 1;
    scope.m_last = record;
    return false;
}

void CLogFlood::Tell(CScope& scope) {
    if (scope.m_left_out != 0) {
        m_sink.Write({scope.m_last.logword, scope.m_last.node,
                      std::to_string(scope.m_left_out) +
                          " errors and warnings left out, the last: " + scope.m_last.text});
        scope.m_left_out = 0;
    }
}
