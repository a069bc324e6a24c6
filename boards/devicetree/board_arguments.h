// The device-tree board's own command line.
#pragma once

#include <filesystem>
#include <map>
#include <string>

enum class EBoardKind {
    SIMULATED,  // what a blob describes, simulated
    DESCRIBED,  // what a blob describes, on this machine
    ADAPTERS,   // the I2C adapters of this machine, without a description
};

struct CBoardArguments {
    EBoardKind kind = EBoardKind::DESCRIBED;
    std::filesystem::path blob;                // --sim FILE or --dtb FILE; empty: the kernel's own
    std::filesystem::path state;               // --state DIR, of a simulated board
    std::map<std::string, std::string> buses;  // --bus NODE=DEVICE
};

// `argv[0]` is the board's file. Without --state the state folder of a simulated board is
// $XDG_STATE_HOME/morva-diags/NAME, or $HOME/.local/state/morva-diags/NAME,
// where NAME is the blob's file name without its extension. Throws
// CDiagException with a text for the operator.
CBoardArguments ParseBoardArguments(int argc, const char* const* argv);
