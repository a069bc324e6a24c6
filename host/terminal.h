// The operator's terminal: one transcript of what commands print and what is
// logged. A line belongs to the thread that began it; what other threads write
// meanwhile waits until that line is whole, so lines never mix. A thread that
// ends ends its line.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/colour.h"
#include "host/diag_log.h"
#include "host/log_filter.h"

class CTerminalLines;

class CTerminal {
  public:
    // Errors go to `errors`, between the lines of the transcript.
    explicit CTerminal(std::FILE* out, std::FILE* errors = stderr);
    ~CTerminal();
    CTerminal(const CTerminal&) = delete;
    CTerminal& operator=(const CTerminal&) = delete;

    // Writes text as it stands, with or without newlines in it.
    void Write(std::string_view text);
    // Writes whole lines, unless another thread's line is open: those that are
    // soon out of date anyway.
    void WriteUnlessOpen(std::string_view lines);
    // Writes whole lines in a colour, where the output shows colours.
    void WriteLines(std::string_view lines, EColour colour);
    // Ends the line that this thread left open, if it did, and writes whole
    // lines to the errors, in red where those show colours.
    void WriteError(std::string_view lines);
    // Ends the line that this thread left open, if it did.
    void EndLine();
    // Shows a line as far as it is written, or the footer below the lines. A whole
    // line shows at once; commands write their lines in many pieces, and showing
    // each would take its time.
    void ShowOpenLine();
    // Why output got lost, an operating-system error number; 0 if none was.
    int Error() const;

    // Columns of the screen; 0 when the output is none or cannot move its cursor.
    unsigned int Columns() const;
    // Shows a text of one row below all lines until it is replaced; empty removes it.
    void SetFooter(const std::string& footer);

    // Puts `prefix` before every line of this thread, which from then on writes
    // whole lines only, so that it keeps nobody else from writing.
    class CPrefix {
      public:
        CPrefix(CTerminal& terminal, const std::string& prefix);
        ~CPrefix();
        CPrefix(const CPrefix&) = delete;
        CPrefix& operator=(const CPrefix&) = delete;

      private:
        CTerminal& m_terminal;
    };

    // Writes a prompt; lines of other threads appear above it, and it once more.
    void BeginPrompt(const std::string& prompt);
    // The line that was read behind the prompt ends or replaces it.
    void EndPrompt();

    // Leaves the screen to a line editor: text waits, and `on_text` is called
    // when some does.
    void LendScreen(const std::function<void()>& on_text);
    // Writes the lines that wait, if there are any, once the editor made room for them.
    void WriteWaiting(const std::function<void()>& make_room);
    // Ends the loan. The editor left the cursor at the start of a line, or in one.
    void TakeScreenBack(bool at_line_start);

  private:
    // Threads that wrote here end their lines in it, if it still exists then.
    const std::shared_ptr<CTerminalLines> m_lines;
    std::FILE* const m_out;
    const bool m_colours;
    const bool m_error_colours;
};

// Sends the log to a terminal: print text as it stands, everything else as
// lines of its own, as far as the filter lets it through; errors are red and
// warnings yellow.
class CTerminalLog : public ILogSink {
  public:
    CTerminalLog(CTerminal& terminal, const CLogFilter& filter);

    bool Takes(unsigned int logword) const override { return m_filter.Shows(logword); }
    void Write(const CLogRecord& record) override;

  private:
    CTerminal& m_terminal;
    const CLogFilter& m_filter;
};
