// The operator's terminal: one transcript of what commands print and what is
// logged. A line belongs to the thread that began it; what other threads write
// meanwhile waits until that line is whole, so lines never mix.
#pragma once

#include <array>
#include <atomic>
#include <cstdio>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "host/diag_log.h"

class CTerminal {
  public:
    explicit CTerminal(std::FILE* out) : m_out(out) {}

    // Writes text as it stands, with or without newlines in it.
    void Write(std::string_view text);
    // Ends the line that this thread left open, if it did.
    void EndLine();

  private:
    // What a thread wrote while the open line was another's.
    struct CWaiting {
        std::thread::id thread;
        std::string text;
    };

    void Put(std::thread::id thread, std::string_view text);
    void PutWaiting();

    std::FILE* const m_out;
    std::mutex m_lock;
    std::thread::id m_owner;  // of the open line, none at the start of a line
    std::list<CWaiting> m_waiting;
};

// Sends the log to a terminal: print text as it stands, everything else as
// lines of its own, debug text only up to the level chosen for its type.
class CTerminalLog : public ILogSink {
  public:
    explicit CTerminalLog(CTerminal& terminal);

    // Shows texts of `type` up to debug level `level` (0 to 15); the higher, the more.
    void SetLevel(ELogTypes type, unsigned int level);
    void Hide(ELogTypes type);

    void Write(const CLogRecord& record) override;

  private:
    // For each type one more than the highest level shown; 0 hides the type.
    std::array<std::atomic<unsigned int>, 16> m_shown_below;
    CTerminal& m_terminal;
};
