// The command line of morva-i2c-sim.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "boards/i2c_sim/adapter.h"

struct CSimOptions {
    std::filesystem::path blob;
    std::filesystem::path state;
    adapter_traits_t traits;
    bool kernel_mux = false;
    std::vector<std::string> command;  // at least one word
};

// Nothing when there is nothing to run: it has been said why, and `status` is what to end
// with.
std::optional<CSimOptions> ReadSimOptions(int argc, char** argv, int& status);
