// What became of one command, for who keeps results or reports them.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/diag_log_word.h"
#include "framework/diag_types.h"
#include "host/shell/exit_status.h"
#include "host/shell/run/scan_result.h"
#include "host/shell/value_type.h"

// One value that a command answered.
struct CRunOutput {
    std::string name;
    CValueType type;
    CValue value;
};

// One line of the log, without its end.
struct CRunLogLine {
    ELogTypes type;
    unsigned int level;
    std::string path;  // of the node that sent it; empty for what has none
    std::string text;
};

struct CRunRecord {
    std::string command;  // the path or the built-in, and the arguments, as they may be typed
    std::string path;     // of the node; empty for a built-in
    unsigned int node_id = 0;
    bool is_test = false;
    std::vector<std::string> arguments;
    std::string origin;    // "script.txt:3", or empty
    unsigned int job = 0;  // its number, 0 in the foreground

    std::vector<CRunLogLine> log;
    size_t log_left_out = 0;  // lines beyond those that are kept
    std::vector<CRunOutput> outputs;
    std::vector<CScannedWire> scan;   // of "scan", empty for everything else
    std::vector<std::string> errors;  // what the shell said of it on standard error

    std::optional<EResCode> code;  // of the node's answer
    EExitStatus status = EXIT_PASSED;
    std::chrono::system_clock::time_point began;
    std::chrono::nanoseconds duration{0};
};

class IRunObserver {
  public:
    virtual ~IRunObserver() = default;
    // Whether it looks at log lines and outputs, which take time and memory.
    virtual bool WantsDetails() const { return false; }
    // From the thread that runs it. Calls do not overlap. What is refused ends
    // without having begun.
    virtual void OnBegin(const CRunRecord&) {}
    virtual void OnEnd(const CRunRecord& record) = 0;
    // Whether what it writes arrives no more.
    virtual bool IsLost() const { return false; }
};
