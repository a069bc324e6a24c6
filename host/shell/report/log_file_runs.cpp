#include "host/shell/report/log_file_runs.h"

#include "host/shell/duration_text.h"
#include "host/shell/report/log_file.h"
#include "host/shell/run/result_name.h"

namespace {

// A line of a script says where it stands.
std::string Named(const CRunRecord& record) {
    return (record.origin.empty() ? "" : record.origin + ": ") + record.command;
}

// What it printed and answered past the log, and what was said of it; a line each.
std::string Said(const CRunRecord& record) {
    std::string text;
    for (const CRunLogLine& line : record.log) {
        if (line.type == LOG_LT_PRINT && line.path.empty()) {
            text += line.text + "\n";
        }
    }
    for (const CRunOutput& output : record.outputs) {
        text += output.name + " = " + output.value.text + "\n";
    }
    for (const std::string& error : record.errors) {
        text += error + "\n";
    }
    return text;
}

}  // namespace

void CLogFileRuns::OnBegin(const CRunRecord& record) {
    m_file.Note(record.path, Named(record));
}

void CLogFileRuns::OnEnd(const CRunRecord& record) {
    m_file.Note(record.path, Said(record) + Named(record) + ": " + ResultName(record) + ", " +
                                 DurationText(record.duration));
}
