#include "host/reports.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "host/options.h"
#include "host/shell/run/run_recorder.h"
#include "host/terminal.h"

CReports::CReports(const COptions& options, CStream json)
    : m_options(options), m_json_stream(std::move(json)) {
    if (!options.junit.empty()) {
        m_junit.emplace(options.junit);
    }
    if (m_json_stream != nullptr) {
        m_json.emplace(m_json_stream.get());
    }
}

CReports::~CReports() = default;

void CReports::OpenLogFile(CTerminal& terminal) {
    if (m_options.log_file.empty()) {
        return;
    }
    m_log_file.emplace(m_options.log_file, [&terminal](const std::string& text) {
        terminal.WriteError("diagsh: " + text + "\n");
    });
    m_log_sink.emplace(*m_log_file);
    m_log_runs.emplace(*m_log_file);
}

void CReports::Attach(CRunRecorder& recorder) {
    if (m_json.has_value()) {
        recorder.AddObserver(*m_json);
    }
    if (m_junit.has_value()) {
        recorder.AddObserver(*m_junit);
    }
    if (m_log_runs.has_value()) {
        recorder.AddObserver(*m_log_runs);
    }
}

void CReports::Finish() {
    if (m_junit.has_value()) {
        m_junit->Finish();
    }
    if (m_json.has_value() && m_json->IsLost()) {
        throw std::system_error(EIO, std::generic_category(), "standard output");
    }
}
