#include "host/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/board_loader.h"
#include "host/shell/exit_status.h"
#include "host/usage_error.h"

namespace {

// Each of them "TYPE=LEVEL".
std::vector<CLogSetting> ParseLogOptions(const std::vector<std::string>& options) {
    for (const std::string& option : options) {
        if (option.find('=') == std::string::npos) {
            throw CLI::ValidationError("--log " + option, "give TYPE=LEVEL, or TYPE=off");
        }
    }
    try {
        return ParseLogSettings(options);
    } catch (const CUsageError& e) {
        throw CLI::ValidationError("--log", e.what());
    }
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

// Decoding a file knows neither board nor shell.
void RefuseWithDecode(const CLI::App& app, const CLI::Option* json,
                      const std::vector<std::string>& for_board) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->count() != 0 && option != json) {
            throw CLI::ValidationError(option->get_name(),
                                       "cannot be given with decode, which loads no board");
        }
    }
    if (!for_board.empty()) {
        throw CLI::ValidationError("--", "cannot be given with decode, which loads no board");
    }
}

// The options of the board that are worth a place of their own.
std::vector<CLI::Option*> AddBoardOptions(CLI::App& app) {
    const auto add = [&app](const char* name, const std::string& description, const char* value) {
        return app.add_option(name, description)->type_name(value)->expected(1);
    };
    const std::string all_adapters = "All I2C adapters of this machine, without a device tree";
    return {
        add("--sim", "Simulate the board that a device tree blob describes", "FILE.dtb")
            ->take_last(),
        add("--state", "Where the simulated board keeps its EEPROMs", "DIR")->take_last(),
        add("--dtb", "This machine is the board that a device tree blob describes", "FILE.dtb")
            ->take_last(),
        add("--bus", "The I2C bus of a node of the device tree is that device", "NODE=DEVICE")
            ->take_all()
            ->allow_extra_args(false),
        app.add_flag("--i2c", all_adapters),
    };
}

// As it was given, to the board.
void HandOn(const CLI::Option& option, std::vector<std::string>& to) {
    if (option.get_items_expected_max() == 0) {
        to.insert(to.end(), option.count() != 0 ? 1 : 0, option.get_name());
        return;
    }
    for (const std::string& value : option.reduced_results()) {
        to.insert(to.end(), {option.get_name(), value});
    }
}

}  // namespace

std::optional<COptions> ReadOptions(int argc, const char* const* argv, int& exit_status) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::vector<std::string> for_board = TakeBoardArguments(arguments);

    COptions options;
    options.board = DefaultBoard();
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
    app.add_flag("--keep-going", options.keep_going,
                 "Go on after a command that does not pass; the run ends with the worst status");
    app.add_flag("--force", options.force, "Write to what the kernel's drivers own without asking");
    const CLI::Option* json = app.add_flag(
        "--json", options.json,
        "Print one JSON object for each command to standard output, and what people read "
        "to standard error");
    auto* junit =
        app.add_option("--junit", options.junit, "Write a JUnit report of the run to FILE")
            ->type_name("FILE")
            ->take_last();
    app.add_option("--log", log_settings,
                   "Show log texts of TYPE up to debug level LEVEL, or none with TYPE=off")
        ->type_name("TYPE=LEVEL")
        ->allow_extra_args(false);
    auto* log_file = app.add_option("--log-file", options.log_file,
                                    "Append all that commands and tests print and log to FILE")
                         ->type_name("FILE")
                         ->take_last();
    app.add_option("--board", options.board, "The board to load, a shared object")
        ->type_name("FILE.so");
    const std::vector<CLI::Option*> of_board = AddBoardOptions(app);
    CDecodeOptions decode_options;
    const CLI::App* decode = AddDecodeCommand(app, decode_options);
    app.set_version_flag("--version", "diagsh (morva-diags) " MORVA_VERSION,
                         "Print the version and exit");
    app.footer(
        "Without --sim, --dtb and --i2c the board is the one that the running kernel's device\n"
        "tree describes. Without a command or a script, commands are read from standard\n"
        "input. Arguments behind -- go to the board, as --sim, --state, --dtb, --bus and\n"
        "--i2c do.\n"
        "Exit status: 0 passed, 1 a command or a test failed, 2 wrong usage, 3 aborted,\n"
        "4 the host or the board could not start.");
    try {
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
        if (junit->count() != 0 && options.junit.empty()) {
            throw CLI::ValidationError("--junit", "the name of the file is empty");
        }
        if (script->count() != 0 && options.script.empty()) {
            throw CLI::ValidationError("script", "the name of the file is empty");
        }
        if (log_file->count() != 0 && options.log_file.empty()) {
            throw CLI::ValidationError("--log-file", "the name of the file is empty");
        }
        options.log_settings = ParseLogOptions(log_settings);
        if (decode->parsed()) {
            RefuseWithDecode(app, json, for_board);
            decode_options.json = decode_options.json || options.json;
            options.decode = decode_options;
        }
    } catch (const CLI::ParseError& e) {
        exit_status = app.exit(e) == 0 ? EXIT_PASSED : EXIT_USAGE;
        return std::nullopt;
    }
    for (const CLI::Option* option : of_board) {
        HandOn(*option, options.board_arguments);
    }
    options.board_arguments.insert(options.board_arguments.end(), for_board.begin(),
                                   for_board.end());
    return options;
}
