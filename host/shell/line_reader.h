// Where the shell's lines come from.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

enum class ELine {
    READ,
    TOO_LONG,     // the line was skipped as a whole
    INTERRUPTED,  // Ctrl-C at the prompt; what was typed is dropped
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

// Lines of a file or a pipe; no prompt is shown. The stream is not owned.
class CStreamReader : public ILineReader {
  public:
    explicit CStreamReader(std::FILE* in) : m_in(in) {}
    ELine Read(const std::string& prompt, std::string& line) override;

  private:
    std::FILE* const m_in;
};

// Lines typed at a terminal, with editing and the history of this run.
std::unique_ptr<ILineReader> MakeTerminalReader();
