#include "host/shell/report/log_file.h"

#include <fcntl.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "framework/diag_menu.h"
#include "host/diag_tree.h"
#include "host/log_types.h"
#include "host/printable.h"
#include "host/shell/run/quiet_thread.h"
#include "host/shell/run/run_recorder.h"

namespace {

using CClock = std::chrono::steady_clock;

constexpr std::chrono::seconds RETRY_AFTER{1};

// Has a reason for what cannot work, and keeps devices and pipes from being
// renamed when the file has grown.
void CheckFile(const std::string& path) {
    const std::string name = "log file " + path;
    const int fd =
        ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    struct stat info {};
    if (fd < 0 || ::fstat(fd, &info) != 0) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    ::close(fd);
    if (!S_ISREG(info.st_mode)) {
        throw std::runtime_error(name + ": is not a regular file");
    }
}

std::string HeadOf(const std::string& type, unsigned int job, const std::string& path) {
    return type + " " + (job != 0 ? std::to_string(job) : "-") + " " +
           (path.empty() ? "-" : Printable(path)) + " ";
}

std::string HeadOf(const CLogRecord& record, unsigned int job) {
    const std::string type = std::string(LogTypeName(LogTypeOf(record.logword))) + ":" +
                             std::to_string(LogLevelOf(record.logword));
    return HeadOf(type, job, record.node == nullptr ? "" : PathOf(*record.node));
}

bool IsUrgent(ELogTypes type) {
    return type <= LOG_LT_WARN;
}

}  // namespace

// Writes lines to the files, and goes on when that fails: the disk may have room
// again later.
class CLogFile::CWriter {
  public:
    CWriter(const std::string& path, size_t max_bytes) : m_sink(path, max_bytes, MAX_FILES - 1) {
        m_sink.set_pattern("%Y-%m-%dT%H:%M:%S.%e%z %v");
    }

    void Add(std::string_view line) {
        Try([&] {
            Put(line);
            m_unflushed = true;
        });
    }
    void Flush() {
        if (m_unflushed) {
            m_unflushed = false;
            Try([this] { m_sink.flush(); });
        }
    }
    // Whether lines are in memory only.
    bool IsUnflushed() const { return m_unflushed; }
    // Why lines were lost; empty if none were.
    const std::string& Error() const { return m_error; }

  private:
    template <class Work>
    void Try(const Work& work) {
        if (m_failing && CClock::now() < m_retry_at) {
            return;
        }
        try {
            if (m_failing) {
                Put("shell - - lines are missing here: " + m_error);
                m_sink.flush();
                m_failing = false;
            }
            work();
        } catch (const std::exception& e) {
            m_error = e.what();
            m_failing = true;
            m_retry_at = CClock::now() + RETRY_AFTER;
        }
    }
    void Put(std::string_view line) {
        m_sink.log({"", spdlog::level::info, {line.data(), line.size()}});
    }

    spdlog::sinks::rotating_file_sink_st m_sink;
    bool m_unflushed = false;
    bool m_failing = false;
    CClock::time_point m_retry_at;
    std::string m_error;
};

CLogFile::CLogFile(const std::string& path, std::function<void(const std::string&)> tell,
                   size_t max_bytes)
    : m_tell(std::move(tell)) {
    CheckFile(path);
    m_writer = std::make_unique<CWriter>(path, max_bytes);
    m_flusher = StartQuietThread([this] { FlushRegularly(); });
}

CLogFile::~CLogFile() {
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_ends = true;
        m_changed.notify_all();
    }
    m_flusher.join();
    std::unique_lock<std::mutex> guard(m_lock);
    while (!m_open.empty()) {
        EndOpenLine(m_open.begin()->first);
    }
    m_writer->Flush();
    TellIfLost(guard);
}

void CLogFile::Write(const CLogRecord& record) {
    const unsigned int job = CRunRecorder::JobHere();
    std::unique_lock<std::mutex> guard(m_lock);
    if (LogTypeOf(record.logword) == LOG_LT_PRINT) {
        AddPieces(record, job);
    } else {
        EndOpenLine(std::this_thread::get_id());
        AddLines(HeadOf(record, job), record.text);
        if (IsUrgent(LogTypeOf(record.logword))) {
            m_writer->Flush();
        }
    }
    TellIfLost(guard);
}

void CLogFile::Note(const std::string& path, std::string_view text) {
    const std::string head = HeadOf("shell", CRunRecorder::JobHere(), path);
    std::unique_lock<std::mutex> guard(m_lock);
    EndOpenLine(std::this_thread::get_id());
    AddLines(head, text);
    m_writer->Flush();
    TellIfLost(guard);
}

void CLogFile::AddPieces(const CLogRecord& record, unsigned int job) {
    std::string_view text = record.text;
    if (text.empty()) {
        return;
    }
    const std::thread::id self = std::this_thread::get_id();
    auto open = m_open.find(self);
    if (open != m_open.end() && (open->second.node != record.node || open->second.job != job)) {
        EndOpenLine(self);
        open = m_open.end();
    }
    if (open == m_open.end()) {
        open = m_open.emplace(self, COpenLine{record.node, job, HeadOf(record, job), ""}).first;
    }
    COpenLine& line = open->second;
    for (size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        line.text += text.substr(0, end);
        AddLine(line.head, line.text);
        line.text.clear();
        text.remove_prefix(end + 1);
    }
    line.text += text;
    if (line.text.empty()) {
        m_open.erase(open);
    }
}

void CLogFile::EndOpenLine(std::thread::id thread) {
    if (const auto open = m_open.extract(thread)) {
        AddLine(open.mapped().head, open.mapped().text);
    }
}

void CLogFile::AddLines(const std::string& head, std::string_view text) {
    while (!text.empty()) {
        const size_t end = text.find('\n');
        AddLine(head, text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void CLogFile::AddLine(const std::string& head, std::string_view text) {
    const bool was_unflushed = m_writer->IsUnflushed();
    m_writer->Add(head + Printable(text));
    if (!was_unflushed) {
        m_changed.notify_all();
    }
}

// Outside the lock: telling may take its time, and may be logged itself.
void CLogFile::TellIfLost(std::unique_lock<std::mutex>& guard) {
    if (m_told || m_writer->Error().empty()) {
        return;
    }
    m_told = true;
    const std::string text = m_writer->Error() + "; lines of the log are missing";
    guard.unlock();
    m_tell(text);
    guard.lock();
}

void CLogFile::FlushRegularly() {
    std::unique_lock<std::mutex> guard(m_lock);
    while (!m_ends) {
        m_changed.wait(guard, [this] { return m_ends || m_writer->IsUnflushed(); });
        m_changed.wait_for(guard, FLUSH_EVERY, [this] { return m_ends; });
        m_writer->Flush();
        TellIfLost(guard);
    }
}
