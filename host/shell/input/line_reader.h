// Where the shell's lines come from.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

class CInterrupt;
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

// Lines of a file or a pipe, or of a terminal whose output goes elsewhere. The
// streams are not owned; prompts go to `prompts`, if there is one.
class CStreamReader : public ILineReader {
  public:
    explicit CStreamReader(std::FILE* in, CTerminal* prompts = nullptr)
        : m_in(in), m_prompts(prompts) {}
    ELine Read(const std::string& prompt, std::string& line) override;

  private:
    ELine ReadLine(std::string& line);
    void SkipByteOrderMark();

    std::FILE* const m_in;
    CTerminal* const m_prompts;
    bool m_begun = false;
};

// Lines typed at a terminal, with editing and the history of this run. What is
// written meanwhile appears above the line.
std::unique_ptr<ILineReader> MakeTerminalReader(const CInterrupt& interrupt, CTerminal& terminal);
