#include "boards/i2c_sim/sim_options.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "boards/devicetree/board_arguments.h"
#include "boards/i2c_sim/adapter_options.h"
#include "boards/preload/preloading.h"

namespace {

constexpr const char* USAGE = "usage: morva-i2c-sim [OPTIONS] BOARD.dtb COMMAND [ARG...]\n";

// With the command, which the parser does not know of.
class CHelp : public CLI::Formatter {
  public:
    std::string make_usage(const CLI::App*, std::string) const override { return USAGE; }
};

template <class Value>
Value Checked(const char* option, Value (*from)(const std::string&), const std::string& text) {
    try {
        return from(text);
    } catch (const std::invalid_argument& fault) {
        throw CLI::ValidationError(option, fault.what());
    }
}

std::vector<std::string> CommandIn(const CLI::App& app) {
    std::vector<std::string> words = app.remaining();
    if (!words.empty() && words.front() == "--") {
        words.erase(words.begin());
    } else if (!words.empty() && words.front().starts_with('-')) {
        throw CLI::ExtrasError({words.front()});
    }
    if (words.empty() || words.front().empty()) {
        throw CLI::RequiredError("COMMAND");
    }
    return words;
}

// The state folder is that of `diagsh --sim`: it is the same board.
std::filesystem::path StateFolder(const std::string& blob, const std::string& state) {
    std::vector<const char*> words = {"morva-i2c-sim", "--sim", blob.c_str()};
    if (!state.empty()) {
        words.insert(words.end(), {"--state", state.c_str()});
    }
    return ParseBoardArguments(static_cast<int>(words.size()), words.data()).state;
}

}  // namespace

std::optional<CSimOptions> ReadSimOptions(int argc, char** argv, int& status) {
    CLI::App app("Runs COMMAND with the I2C adapters of a board simulated as /dev/i2c-N.",
                 "morva-i2c-sim");
    app.formatter(std::make_shared<CHelp>());
    std::string blob;
    std::string state;
    std::string functions = "i2c,smbus";
    std::string no_ack = "enxio";
    CSimOptions options;
    app.add_option("--state", state, "keep the contents of the simulated memories here")
        ->type_name("DIR");
    app.add_option("--functions", functions,
                   "what the adapters can do: a list of " + FunctionNames())
        ->type_name("LIST");
    app.add_option("--no-ack", no_ack, "how they tell that nobody acknowledged: " + NoAckNames())
        ->type_name("HOW");
    app.add_flag("--kernel-mux", options.kernel_mux,
                 "the kernel drives the multiplexers: each channel is an adapter");
    app.add_option("BOARD.dtb", blob, "the board's device tree blob")->required();
    app.prefix_command();
    try {
        app.parse(argc, argv);
        options.command = CommandIn(app);
        options.traits = {Checked("--functions", FunctionsFrom, functions),
                          Checked("--no-ack", NoAckFrom, no_ack)};
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        status = 0;
        return std::nullopt;
    } catch (const CLI::ParseError& fault) {
        std::fprintf(stderr, "morva-i2c-sim: %s\n%s", fault.what(), USAGE);
        status = SWITCH_FAILED;
        return std::nullopt;
    }
    options.blob = blob;
    options.state = StateFolder(blob, state);
    return options;
}
