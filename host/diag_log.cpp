#include "host/diag_log.h"

#include <algorithm>
#include <optional>

#include "framework/diag_functions.h"
#include "framework/fmt_output.h"

CDiagLog& CDiagLog::Instance() {
    static CDiagLog log;
    return log;
}

void CDiagLog::AddSink(ILogSink& sink) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_sinks.push_back(&sink);
}

void CDiagLog::RemoveSink(ILogSink& sink) {
    const std::lock_guard<std::mutex> guard(m_lock);
    m_sinks.erase(std::remove(m_sinks.begin(), m_sinks.end(), &sink), m_sinks.end());
}

void CDiagLog::Send(const CDiagMenu* node, unsigned int logword, const char* fmt, va_list args) {
    const std::lock_guard<std::mutex> guard(m_lock);
    std::optional<CLogRecord> record;  // made when the first sink wants it
    for (ILogSink* sink : m_sinks) {
        if (!sink->Takes(logword)) {
            continue;
        }
        if (!record.has_value()) {
            CFmtString text;
            text.vprintf(fmt, args);
            record = {logword, node, std::string(text.c_str(), text.length())};
        }
        sink->Write(*record);
    }
}

void diag_pf_send_log(unsigned int logword, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    CDiagLog::Instance().Send(nullptr, logword, fmt, args);
    va_end(args);
}
