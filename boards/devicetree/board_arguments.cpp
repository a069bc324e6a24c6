#include "boards/devicetree/board_arguments.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string>

#include "framework/diag_exception.h"

namespace {

// The path that a variable holds, empty unless it is an absolute one.
std::filesystem::path AbsolutePathFrom(const char* variable) {
    const char* value = std::getenv(variable);
    const std::filesystem::path path = value != nullptr ? value : "";
    return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path DefaultState(const std::filesystem::path& blob) {
    std::filesystem::path base = AbsolutePathFrom("XDG_STATE_HOME");
    if (base.empty()) {
        const std::filesystem::path home = AbsolutePathFrom("HOME");
        if (home.empty()) {
            throw CDiagException(
                "no folder for the contents of the simulated memories: set HOME or give --state "
                "DIR");
        }
        base = home / ".local" / "state";
    }
    return base / "morva-diags" / blob.stem();
}

}  // namespace

CBoardArguments ParseBoardArguments(int argc, const char* const* argv) {
    CLI::App app("A board described by a device tree.", "board");
    std::string blob;
    std::string state;
    app.add_option("--sim", blob, "simulate the board that this device tree blob describes")
        ->type_name("FILE");
    app.add_option("--state", state, "keep the contents of the simulated memories here")
        ->type_name("DIR");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        throw CDiagException("%s", app.help().c_str());
    } catch (const CLI::ParseError& fault) {
        throw CDiagException("board arguments: %s", fault.what());
    }
    if (blob.empty()) {
        throw CDiagException(
            "this board can only be simulated so far: name its device tree blob with --sim FILE");
    }
    return {blob, state.empty() ? DefaultState(blob) : std::filesystem::path(state)};
}
