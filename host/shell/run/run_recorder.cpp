#include "host/shell/run/run_recorder.h"

#include <algorithm>
#include <utility>

#include "framework/diag_menu.h"
#include "host/diag_tree.h"
#include "host/log_filter.h"

namespace {

thread_local CRunRecorder::COpen* t_open = nullptr;

// Calls `add` with every line of a text, without its end.
template <class Add>
void ForEachLine(std::string_view text, const Add& add) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        add(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

}  // namespace

CRunRecorder::~CRunRecorder() {
    if (m_wants_details) {
        CDiagLog::Instance().RemoveSink(*this);
    }
}

void CRunRecorder::AddObserver(IRunObserver& observer) {
    m_observers.push_back(&observer);
    if (observer.WantsDetails() && !m_wants_details) {
        m_wants_details = true;
        CDiagLog::Instance().AddSink(*this);
    }
}

bool CRunRecorder::IsLost() const {
    return std::any_of(m_observers.begin(), m_observers.end(),
                       [](const IRunObserver* observer) { return observer->IsLost(); });
}

CRunRecorder::COpen::COpen(CRunRecorder& recorder, CRunRecord record)
    : m_recorder(recorder),
      m_outer(std::exchange(t_open, this)),
      m_record(std::move(record)),
      m_began(std::chrono::steady_clock::now()) {
    m_record.began = std::chrono::system_clock::now();
}

CRunRecorder::COpen::~COpen() {
    t_open = m_outer;
    if (m_dropped) {
        return;
    }
    m_record.duration = std::chrono::steady_clock::now() - m_began;
    EndPrint(*this);
    m_recorder.End(m_record);
}

CRunRecorder::COpen* CRunRecorder::OpenHere() const {
    return m_wants_details ? t_open : nullptr;
}

void CRunRecorder::NoteOutput(const std::string& name, CValueType type, const CValue& value) {
    if (COpen* open = OpenHere()) {
        open->m_record.outputs.push_back({name, type, value});
    }
}

void CRunRecorder::NotePrint(std::string_view text) {
    if (COpen* open = OpenHere()) {
        AddPrint(*open, "", text);
    }
}

void CRunRecorder::NoteScan(const std::vector<CScannedWire>& wires) {
    if (COpen* open = OpenHere()) {
        open->m_record.scan = wires;
    }
}

void CRunRecorder::NoteCode(EResCode code) {
    if (t_open != nullptr) {
        t_open->m_record.code = code;
    }
}

void CRunRecorder::NoteError(const std::string& text) {
    if (t_open != nullptr) {
        t_open->m_record.errors.push_back(text);
    }
}

unsigned int CRunRecorder::JobHere() {
    return t_open != nullptr ? t_open->m_record.job : 0;
}

bool CRunRecorder::Takes(unsigned int logword) const {
    return t_open != nullptr && m_filter.Shows(logword);
}

void CRunRecorder::Write(const CLogRecord& record) {
    COpen* open = OpenHere();
    if (open == nullptr) {
        return;
    }
    const std::string path = record.node == nullptr ? "" : PathOf(*record.node);
    const ELogTypes type = LogTypeOf(record.logword);
    if (type == LOG_LT_PRINT) {
        AddPrint(*open, path, record.text);
        return;
    }
    EndPrint(*open);
    ForEachLine(record.text, [&](std::string_view line) {
        AddLine(open->m_record, {type, LogLevelOf(record.logword), path, std::string(line)});
    });
}

// Commands print their lines in pieces.
void CRunRecorder::AddPrint(COpen& open, const std::string& path, std::string_view text) {
    if (open.m_print_path != path) {
        EndPrint(open);
        open.m_print_path = path;
    }
    for (size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        open.m_print += text.substr(0, end);
        AddLine(open.m_record, {LOG_LT_PRINT, 0, path, std::exchange(open.m_print, {})});
        text.remove_prefix(end + 1);
    }
    open.m_print += text;
}

void CRunRecorder::EndPrint(COpen& open) {
    if (!open.m_print.empty()) {
        AddLine(open.m_record,
                {LOG_LT_PRINT, 0, open.m_print_path, std::exchange(open.m_print, {})});
    }
}

void CRunRecorder::AddLine(CRunRecord& record, CRunLogLine line) {
    if (record.log.size() < MAX_LINES) {
        record.log.push_back(std::move(line));
    } else {
        ++record.log_left_out;
    }
}

void CRunRecorder::Begin(const CRunRecord& record) {
    const std::lock_guard<std::mutex> guard(m_lock);
    for (IRunObserver* observer : m_observers) {
        observer->OnBegin(record);
    }
}

void CRunRecorder::End(const CRunRecord& record) {
    const std::lock_guard<std::mutex> guard(m_lock);
    for (IRunObserver* observer : m_observers) {
        observer->OnEnd(record);
    }
}
