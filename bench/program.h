// Programs that are measured as whole processes: what one run costs, and how
// long one takes until it shows something on a terminal.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

struct CProcessCost {
    double elapsed_ms = 0;
    double cpu_ms = 0;  // user and system
};

// User and system time together.
double MsOf(const rusage& usage);

// Runs a program, the first of the words, and awaits its end; what it prints goes
// nowhere. Throws std::runtime_error unless it exits with 0.
CProcessCost RunProgram(const std::vector<std::string>& words);

// A program on a pseudo-terminal of its own.
class CTerminalProgram {
  public:
    explicit CTerminalProgram(const std::vector<std::string>& words);
    // Kills it, unless it was awaited.
    ~CTerminalProgram();
    CTerminalProgram(const CTerminalProgram&) = delete;
    CTerminalProgram& operator=(const CTerminalProgram&) = delete;

    // Reads until the text has come and returns the milliseconds since the start;
    // throws std::runtime_error when it does not come.
    double AwaitText(std::string_view text);
    void Type(std::string_view keys) const;
    // Awaits its end; throws std::runtime_error unless it exits with 0.
    CProcessCost AwaitEnd();

  private:
    double SinceStartMs() const;
    // False at the end of its output.
    bool ReadMore();

    const std::string m_name;
    const std::chrono::steady_clock::time_point m_began;
    int m_terminal = -1;
    pid_t m_pid = -1;
    std::string m_shown;
};
