#include "boards/devicetree/board_arguments.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

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

// "NODE=DEVICE" as the two; the name of a node may hold no "=".
std::pair<std::string, std::string> ParseBus(const std::string& text) {
    const size_t equals = text.find('=');
    if (!text.starts_with('/') || equals == std::string::npos || equals + 1 == text.size()) {
        throw CDiagException(
            "board arguments: --bus %s: should be NODE=DEVICE, as in "
            "--bus /soc/i2c@118000=/dev/i2c-0",
            text.c_str());
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

}  // namespace

CBoardArguments ParseBoardArguments(int argc, const char* const* argv) {
    CLI::App app("A board described by a device tree: this machine, or a simulated one.", "board");
    CBoardArguments arguments;
    std::string sim;
    std::string dtb;
    std::string state;
    std::vector<std::string> buses;
    bool adapters = false;
    auto* of_sim =
        app.add_option("--sim", sim, "simulate the board that this device tree blob describes")
            ->type_name("FILE");
    app.add_option("--state", state, "keep the contents of the simulated memories here")
        ->type_name("DIR")
        ->needs(of_sim);
    auto* of_dtb = app.add_option("--dtb", dtb,
                                  "this machine is what this device tree blob describes, not "
                                  "what its kernel started with")
                       ->type_name("FILE")
                       ->excludes(of_sim);
    auto* of_buses = app.add_option("--bus", buses, "the I2C bus of this node is this device")
                         ->type_name("NODE=DEVICE")
                         ->allow_extra_args(false)
                         ->excludes(of_sim);

    app.add_flag("--i2c", adapters, "all I2C adapters of this machine, without a device tree")
        ->excludes(of_sim)
        ->excludes(of_dtb)
        ->excludes(of_buses);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        throw CDiagException("%s", app.help().c_str());
    } catch (const CLI::ParseError& fault) {
        throw CDiagException("board arguments: %s", fault.what());
    }
    for (const auto& [option, file] : {std::pair("--sim", of_sim), std::pair("--dtb", of_dtb)}) {
        if (file->count() != 0 && file->as<std::string>().empty()) {
            throw CDiagException("board arguments: %s: the name of the file is empty", option);
        }
    }
    for (const std::string& bus : buses) {
        const auto [node, device] = ParseBus(bus);
        if (const auto [first, is_new] = arguments.buses.emplace(node, device); !is_new) {
            throw CDiagException("board arguments: --bus %s: the bus of %s is %s already",
                                 bus.c_str(), node.c_str(), first->second.c_str());
        }
    }
    if (of_sim->count() != 0) {
        arguments.kind = EBoardKind::SIMULATED;
        arguments.blob = sim;
        arguments.state = state.empty() ? DefaultState(sim) : std::filesystem::path(state);
    } else if (adapters) {
        arguments.kind = EBoardKind::ADAPTERS;
    } else {
        arguments.blob = dtb;
    }
    return arguments;
}
