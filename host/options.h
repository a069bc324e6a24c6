// The command line of diagsh.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/diag_log_word.h"

struct COptions {
    std::vector<std::string> commands;  // of -c
    std::string script;
    std::string board;
    std::vector<std::string> board_arguments;

    // What --log asks for: a debug level, or none to hide the type.
    struct CLogLevel {
        ELogTypes type;
        std::optional<unsigned int> level;
    };
    std::vector<CLogLevel> log_levels;
};

// Reads the command line. When there is nothing to run (help was asked for, or
// the usage is wrong), it says so itself and sets `exit_status`.
std::optional<COptions> ReadOptions(int argc, const char* const* argv, int& exit_status);
