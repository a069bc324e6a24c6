#include "host/shell/builtins/builtins.h"

#include <algorithm>

#include "host/diag_tree.h"
#include "host/shell/builtins/access.h"
#include "host/shell/builtins/help.h"
#include "host/shell/builtins/history_command.h"
#include "host/shell/builtins/job_commands.h"
#include "host/shell/builtins/listing.h"
#include "host/shell/builtins/log_command.h"
#include "host/shell/builtins/raw_export.h"
#include "host/shell/builtins/raw_import.h"
#include "host/shell/builtins/repeat.h"
#include "host/shell/builtins/scan.h"
#include "host/shell/builtins/sleep.h"
#include "host/shell/builtins/source.h"
#include "host/shell/builtins/status.h"
#include "host/shell/node_kind.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

using CArguments = std::vector<std::string>;

constexpr size_t ANY_NUMBER = static_cast<size_t>(-1);

EExitStatus ChangeNode(CShell& shell, const CArguments& arguments) {
    CDiagObj& node = shell.NodeAt(arguments.empty() ? "/" : arguments.front());
    if (!IsContainer(node)) {
        throw CUsageError(PathOf(node) + " is " + DescribeType(node) +
                          "; cd goes to menus and devices");
    }
    shell.SetCurrent(node);
    return EXIT_PASSED;
}

EExitStatus PrintPath(CShell& shell, const CArguments&) {
    shell.Print(PathOf(shell.Current()) + "\n");
    return EXIT_PASSED;
}

EExitStatus Echo(CShell& shell, const CArguments& arguments) {
    std::string line;
    for (size_t i = 0; i < arguments.size(); ++i) {
        line += (i == 0 ? "" : " ") + arguments[i];
    }
    shell.Print(line + "\n");
    return EXIT_PASSED;
}

EExitStatus Quit(CShell& shell, const CArguments&) {
    shell.Quit();
    return EXIT_PASSED;
}

}  // namespace

const std::vector<CBuiltin>& Builtins() {
    using enum EArgument;
    static const std::vector<CBuiltin> builtins = {
        {"cd",
         "[NODE]",
         "Go to a menu or device; without NODE to the top.",
         0,
         1,
         ChangeNode,
         {{CONTAINER}}},
        {"pwd", "", "Print the path of the node you are at.", 0, 0, PrintPath, {}},
        {"ls", "[-l] [NODE]", "List what is in a node.", 0, ANY_NUMBER, List, {{NODE, {"-l"}}}},
        {"tree",
         "[-a] [-l] [-d LEVELS] [NODE]",
         "Show everything below a node, commands only with -a.",
         0,
         ANY_NUMBER,
         Tree,
         {{NODE, {"-a", "-l", "-d"}}}},
        {"find",
         "TEXT [NODE]",
         "List the nodes that have a text in their name or description.",
         1,
         2,
         Find,
         {{WORD}, {NODE}}},
        {"scan",
         "[-a] [-q|-r] [NODE]",
         "Show which addresses answer on the buses and behind their multiplexers.",
         0,
         ANY_NUMBER,
         Scan,
         {{CONTAINER, {"-a", "-q", "-r"}}}},
        {"peek",
         "NODE [POSITION|FIRST..LAST]",
         "Read a value, or elements of an array.",
         1,
         2,
         Peek,
         {{ACCESS}, {WORD}}},
        {"poke",
         "NODE [POSITION|FIRST..LAST] VALUE",
         "Write a value, or the same value to elements of an array.",
         2,
         3,
         Poke,
         {{ACCESS}, {WORD}}},
        {"export",
         "NODE FILE [--force]",
         "Write the contents of a memory device to a file.",
         2,
         3,
         Export,
         {{MEMORY}, {PATHNAME}, {WORD, {"--force"}}}},
        {"import",
         "NODE FILE [OFFSET] [--yes]",
         "Write a file into a memory device.",
         2,
         4,
         Import,
         {{MEMORY}, {PATHNAME}, {WORD, {"--yes"}}}},
        {"repeat",
         "COUNT|until-fail COMMAND [ARGUMENT...]",
         "Run a command again and again, and sum up.",
         2,
         ANY_NUMBER,
         Repeat,
         {{WORD, {"until-fail"}}, {LINE}}},
        {"sleep", "SECONDS", "Wait for a time, as 2 or 0.5.", 1, 1, Sleep, {{WORD}}},
        {"source", "FILE", "Run the commands of a file.", 1, 1, Source, {{PATHNAME}}},
        {"status",
         "[NODE] | --reset",
         "Show what became of the tests, all or those at and below a node.",
         0,
         2,
         Status,
         {{NODE, {"--reset"}}}},
        {"log",
         "[TYPE=LEVEL...] | default",
         "Show or choose which log texts show: up to a level (0 to 15), or off.",
         0,
         ANY_NUMBER,
         ChooseLog,
         {{WORD, LogWords()}}},
        {"jobs", "", "List the background jobs.", 0, 0, ListJobs, {}},
        {"wait",
         "[JOB...]",
         "Wait for background jobs, without JOB for all.",
         0,
         ANY_NUMBER,
         WaitForJobs,
         {{JOB}}},
        {"stop",
         "[JOB|NODE...]",
         "Stop background jobs: some, those at and below a node, or all.",
         0,
         ANY_NUMBER,
         StopJobs,
         {{JOB}}},
        {"echo", "[TEXT...]", "Print a line of text.", 0, ANY_NUMBER, Echo, {{WORD}}},
        {"history",
         "[COUNT|TEXT]",
         "List the last lines that were typed, or those that have a text in them.",
         0,
         1,
         ListHistory,
         {{WORD}}},
        {"help",
         "[NODE|BUILT-IN|syntax]",
         "Explain a node, a built-in command, or how lines are written.",
         0,
         1,
         Help,
         {{LINE, {"syntax"}}}},
        {"quit", "", "Leave the shell; so does the end of input.", 0, 0, Quit, {}},
    };
    return builtins;
}

const CBuiltin* FindBuiltin(const std::string& name) {
    const auto& all = Builtins();
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const CBuiltin& b) { return name == b.name; });
    return found == all.end() ? nullptr : &*found;
}

const std::vector<std::string>& BuiltinNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const CBuiltin& builtin : Builtins()) {
            all.emplace_back(builtin.name);
        }
        return all;
    }();
    return names;
}

std::string UsageOf(const CBuiltin& builtin) {
    return std::string("usage: ") + builtin.name + (*builtin.synopsis == '\0' ? "" : " ") +
           builtin.synopsis;
}

EExitStatus RunBuiltin(const CBuiltin& builtin, CShell& shell, const CArguments& arguments) {
    if (arguments.size() < builtin.min_arguments || arguments.size() > builtin.max_arguments) {
        throw CUsageError(std::string(builtin.name) + ": " +
                          (arguments.size() < builtin.min_arguments ? "too few" : "too many") +
                          " arguments\n" + UsageOf(builtin));
    }
    return builtin.run(shell, arguments);
}
