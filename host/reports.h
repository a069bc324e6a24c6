// What a run reports beside its transcript: JSON objects, a JUnit report, a log file.
#pragma once

#include <memory>
#include <optional>

#include "host/shell/report/json_report.h"
#include "host/shell/report/junit_report.h"
#include "host/shell/report/log_file.h"
#include "host/shell/report/log_file_runs.h"
#include "host/standard_streams.h"

class CRunRecorder;
class CTerminal;
struct COptions;

class CReports {
  public:
    // Opens what the options ask for, but for the log file; the objects go to
    // `json`, if there is one. Throws std::system_error that names a file that
    // cannot be made.
    CReports(const COptions& options, CStream json);
    ~CReports();
    CReports(const CReports&) = delete;
    CReports& operator=(const CReports&) = delete;

    // From now on everything is logged; where lines get lost the terminal says so.
    // Throws std::runtime_error that names the file.
    void OpenLogFile(CTerminal& terminal);
    // Has everything that runs reported.
    void Attach(CRunRecorder& recorder);
    // Writes what is written at the end. Throws std::system_error.
    void Finish();

  private:
    const COptions& m_options;
    CStream m_json_stream;
    std::optional<CJsonReport> m_json;
    std::optional<CJunitReport> m_junit;
    std::optional<CLogFile> m_log_file;
    std::optional<CLogSinkScope> m_log_sink;
    std::optional<CLogFileRuns> m_log_runs;
};
