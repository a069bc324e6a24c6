// The device-tree board's own command line.
#pragma once

#include <filesystem>

struct CBoardArguments {
    std::filesystem::path blob;   // --sim FILE
    std::filesystem::path state;  // --state DIR
};

// `argv[0]` is the board's file. Without --state the state folder is
// $XDG_STATE_HOME/morva-diags/NAME, or $HOME/.local/state/morva-diags/NAME,
// where NAME is the blob's file name without its extension. Throws
// CDiagException with a text for the operator.
CBoardArguments ParseBoardArguments(int argc, const char* const* argv);
