// Where the shell's lines come from.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

class CHistory;
class CInterrupt;
class CShell;
class CTerminal;

enum class ELine {
    READ,
    TOO_LONG,     // the line was skipped as a whole
    UNREADABLE,   // it held bytes that are no characters, shown as ?
    INTERRUPTED,  // by Ctrl-C; what came of the line is dropped
    END,
    FAILED,  // the input cannot be read
};

class ILineReader {
  public:
    // Bytes in a line at the most.
    static constexpr size_t MAX_LINE = 65536;

    virtual ~ILineReader() = default;
    // Reads one line without its end.
    virtual ELine Read(const std::string& prompt, std::string& line) = 0;
};

// Lines of a file or a pipe, without prompts. The stream is not owned.
class CStreamReader : public ILineReader {
  public:
    explicit CStreamReader(std::FILE* in) : m_in(in) {}
    ELine Read(const std::string& prompt, std::string& line) override;

  private:
    void SkipByteOrderMark();

    std::FILE* const m_in;
    bool m_begun = false;
};

// Lines typed at a terminal on which none can be edited, or whose output goes
// elsewhere.
class CPromptReader : public ILineReader {
  public:
    CPromptReader(std::FILE* in, CTerminal& terminal, const CInterrupt& interrupt)
        : m_in(in), m_terminal(terminal), m_interrupt(interrupt), m_lines(in) {}
    ELine Read(const std::string& prompt, std::string& line) override;

  private:
    std::FILE* const m_in;
    CTerminal& m_terminal;
    const CInterrupt& m_interrupt;
    CStreamReader m_lines;
};

// Lines typed at a terminal that can move its cursor, with editing, completion and
// the history. What is written meanwhile appears above the line.
std::unique_ptr<ILineReader> MakeTerminalReader(const CShell& shell, const CHistory& history);
