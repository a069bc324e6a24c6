// The command line of diagsh.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/decode_command.h"
#include "host/shell/log_settings.h"

struct COptions {
    std::vector<std::string> commands;  // of -c
    std::string script;
    bool keep_going = false;
    bool force = false;
    bool json = false;
    std::string junit;  // the file of the report, if there shall be one
    std::string board;
    std::vector<std::string> board_arguments;
    std::vector<CLogSetting> log_settings;
    std::string log_file;
    // Of "diagsh decode", with which nothing else is given.
    std::optional<CDecodeOptions> decode;
};

// Reads the command line. When there is nothing to run (help was asked for, or
// the usage is wrong), it says so itself and sets `exit_status`.
std::optional<COptions> ReadOptions(int argc, const char* const* argv, int& exit_status);
