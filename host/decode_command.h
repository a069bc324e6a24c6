// "diagsh decode": what a saved EEPROM holds, in words. No board is loaded for it.
#pragma once

#include <cstdio>
#include <string>

#include "host/shell/exit_status.h"

namespace CLI {
class App;
}

struct CDecodeOptions {
    std::string kind;  // one of those that Decoders() has
    std::string file;
    bool json = false;
};

// Adds the subcommand to the command line of diagsh.
CLI::App* AddDecodeCommand(CLI::App& app, CDecodeOptions& options);

// Prints what the file means to `out`: EXIT_PASSED when the record is sound, else
// EXIT_FAILED. Throws CUsageError when the file is no image, std::system_error when
// `out` cannot be written.
EExitStatus RunDecode(const CDecodeOptions& options, std::FILE* out);
