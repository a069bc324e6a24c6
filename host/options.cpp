#include "host/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "host/board_loader.h"
#include "host/shell/exit_status.h"

namespace {

const std::map<std::string, ELogTypes> LOG_TYPES = {
    {"test-error", LOG_LT_ERR_TEST},
    {"system-error", LOG_LT_ERR_SYS},
    {"error", LOG_LT_ERR_SW},
    {"warning", LOG_LT_WARN},
    {"system", LOG_LT_SYS},
    {"info", LOG_LT_INFO},
    {"progress", LOG_LT_PROGRESS},
    {"result", LOG_LT_RESULT},
    {"hw-debug", LOG_LT_HW_DEBUG_BASE},
    {"sw-debug", LOG_LT_SW_DEBUG_BASE},
};
constexpr unsigned int HIGHEST_LEVEL = 15;

// "TYPE=LEVEL" or "TYPE=off".
COptions::CLogLevel ParseLogLevel(const std::string& setting) {
    const size_t equals = std::min(setting.find('='), setting.size());
    const auto type = LOG_TYPES.find(setting.substr(0, equals));
    if (equals == setting.size() || type == LOG_TYPES.end()) {
        std::string names;
        for (const auto& [name, value] : LOG_TYPES) {
            names += (names.empty() ? "" : ", ") + name;
        }
        throw CLI::ValidationError("--log " + setting, "give TYPE=LEVEL, TYPE one of " + names);
    }
    const std::string level = setting.substr(equals + 1);
    if (level == "off") {
        return {type->second, std::nullopt};
    }
    unsigned int number = 0;
    if (!CLI::detail::lexical_cast(level, number) || number > HIGHEST_LEVEL) {
        throw CLI::ValidationError("--log " + setting, "the level is 0 to 15, or off");
    }
    return {type->second, number};
}

// Takes the arguments behind "--" off, for the board.
std::vector<std::string> TakeBoardArguments(std::vector<std::string>& arguments) {
    const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    std::vector<std::string> taken;
    if (dashes != arguments.end()) {
        taken.assign(dashes + 1, arguments.end());
        arguments.erase(dashes, arguments.end());
    }
    return taken;
}

}  // namespace

std::optional<COptions> ReadOptions(int argc, const char* const* argv, int& exit_status) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::vector<std::string> for_board = TakeBoardArguments(arguments);

    COptions options;
    options.board = DefaultBoard();
    std::string sim;
    std::string state;
    std::vector<std::string> log_settings;

    CLI::App app("Hardware diagnostics: a prompt, or a script, on a board's tree of devices.",
                 "diagsh");
    auto* commands =
        app.add_option("-c", options.commands, "Run COMMAND and exit; may be given several times")
            ->type_name("COMMAND")
            ->allow_extra_args(false);
    auto* script = app.add_option("script", options.script, "Run the commands of FILE and exit")
                       ->type_name("FILE")
                       ->excludes(commands);
    app.add_option("--log", log_settings,
                   "Show log texts of TYPE up to debug level LEVEL, or none with TYPE=off")
        ->type_name("TYPE=LEVEL")
        ->allow_extra_args(false);
    app.add_option("--board", options.board, "The board to load, a shared object")
        ->type_name("FILE.so");
    app.add_option("--sim", sim, "Simulate the board that a device tree blob describes")
        ->type_name("FILE.dtb")
        ->take_last();
    app.add_option("--state", state, "Where the simulated board keeps its EEPROMs")
        ->type_name("DIR")
        ->take_last();
    app.footer(
        "Without a command or a script, commands are read from standard input. Arguments\n"
        "behind -- go to the board, as --sim and --state do.\n"
        "Exit status: 0 passed, 1 a command or a test failed, 2 wrong usage, 3 aborted,\n"
        "4 the host or the board could not start.");
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
        if (script->count() != 0 && options.script.empty()) {
            throw CLI::ValidationError("script", "the name of the file is empty");
        }
        for (const std::string& setting : log_settings) {
            options.log_levels.push_back(ParseLogLevel(setting));
        }
    } catch (const CLI::ParseError& e) {
        exit_status = app.exit(e) == 0 ? EXIT_PASSED : EXIT_USAGE;
        return std::nullopt;
    }
    if (!sim.empty()) {
        options.board_arguments.insert(options.board_arguments.end(), {"--sim", sim});
    }
    if (!state.empty()) {
        options.board_arguments.insert(options.board_arguments.end(), {"--state", state});
    }
    options.board_arguments.insert(options.board_arguments.end(), for_board.begin(),
                                   for_board.end());
    return options;
}
