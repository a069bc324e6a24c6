// The operator's terminal: one transcript of what commands print and what is
// logged. A line belongs to the thread that began it; what other threads write
// meanwhile waits until that line is whole, so lines never mix. A thread that
// ends ends its line.
#pragma once

#include <array>
#include <atomic>
#include <cstdio>
#include <memory>
#include <string_view>

#include "host/diag_log.h"

class CTerminal {
  public:
    explicit CTerminal(std::FILE* out);
    ~CTerminal();
    CTerminal(const CTerminal&) = delete;
    CTerminal& operator=(const CTerminal&) = delete;

    // Writes text as it stands, with or without newlines in it.
    void Write(std::string_view text);
    // Ends the line that this thread left open, if it did.
    void EndLine();
    // Why output got lost, an operating-system error number; 0 if none was.
    int Error() const;

  private:
    class CLines;
    // Threads that wrote here end their lines in it, if it still exists then.
    const std::shared_ptr<CLines> m_lines;

    friend class CThreadEnd;
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
