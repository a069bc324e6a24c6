// The log file: all that commands and tests print and log, whatever the terminal
// shows of it, with what the shell does between. A line each:
//
//   2026-11-21T12:30:05.123+01:00 hw-debug:10 1 /i2c-0 write to 0x50
//
// time, type and level, number of the job and path of the node, "-" for none, text.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "host/diag_log.h"

class CLogFile : public ILogSink {
  public:
    // A file that would grow beyond becomes session.1.log, that session.2.log, and
    // so on; of all together the oldest goes.
    static constexpr size_t MAX_BYTES = 10'485'760;
    static constexpr size_t MAX_FILES = 5;
    // So long at the most a line is kept in memory only.
    static constexpr std::chrono::seconds FLUSH_EVERY{1};

    // Appends to the file at `path`; throws std::runtime_error that names it when
    // it cannot be written. Once, when lines get lost, `tell` is called with a text
    // that says why; what is logged goes on.
    CLogFile(const std::string& path, std::function<void(const std::string&)> tell,
             size_t max_bytes = MAX_BYTES);
    ~CLogFile() override;
    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    void Write(const CLogRecord& record) override;
    // Writes what the shell does on this thread, as lines of type "shell", at once
    // also to the disk. `path` is that of the node, empty for none.
    void Note(const std::string& path, std::string_view text);

  private:
    class CWriter;

    // A line that comes in pieces, as commands print.
    struct COpenLine {
        const CDiagMenu* node;  // who prints it, only to be compared
        unsigned int job;
        std::string head;
        std::string text;
    };

    void AddPieces(const CLogRecord& record, unsigned int job);
    void EndOpenLine(std::thread::id thread);
    void AddLines(const std::string& head, std::string_view text);
    void AddLine(const std::string& head, std::string_view text);
    void TellIfLost(std::unique_lock<std::mutex>& guard);
    void FlushRegularly();

    const std::function<void(const std::string&)> m_tell;
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::unique_ptr<CWriter> m_writer;
    std::map<std::thread::id, COpenLine> m_open;
    bool m_told = false;
    bool m_ends = false;
    std::thread m_flusher;
};
