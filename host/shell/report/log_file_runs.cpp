#include "host/shell/report/log_file_runs.h"

#include "host/shell/duration_text.h"
#include "host/shell/report/log_file.h"
#include "host/shell/report/result_name.h"

namespace {

// A line of a script says where it stands.
std::string Named(const CRunRecord& record) {
    return (record.origin.empty() ? "" : record.origin + ": ") + record.command;
}

}  // namespace

void CLogFileRuns::OnBegin(const CRunRecord& record) {
    m_file.Note(record.path, Named(record));
}

void CLogFileRuns::OnEnd(const CRunRecord& record) {
    for (const std::string& error : record.errors) {
        m_file.Note(record.path, error);
    }
    m_file.Note(record.path,
                Named(record) + ": " + ResultName(record) + ", " + DurationText(record.duration));
}
