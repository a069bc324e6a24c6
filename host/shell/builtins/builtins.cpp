#include "host/shell/builtins/builtins.h"

#include <algorithm>

#include "host/diag_tree.h"
#include "host/shell/builtins/access.h"
#include "host/shell/builtins/help.h"
#include "host/shell/builtins/job_commands.h"
#include "host/shell/builtins/listing.h"
#include "host/shell/builtins/raw_export.h"
#include "host/shell/builtins/raw_import.h"
#include "host/shell/node_kind.h"
#include "host/shell/shell.h"
#include "host/shell/usage_error.h"

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

EExitStatus List(CShell& shell, const CArguments& arguments) {
    shell.Print(ListChildren(shell.NodeAt(arguments.empty() ? "." : arguments.front())));
    return EXIT_PASSED;
}

EExitStatus Tree(CShell& shell, const CArguments& arguments) {
    shell.Print(ListTree(shell.NodeAt(arguments.empty() ? "." : arguments.front())));
    return EXIT_PASSED;
}

EExitStatus Help(CShell& shell, const CArguments& arguments) {
    if (arguments.empty()) {
        shell.Print(HelpOnShell());
    } else if (const CBuiltin* builtin = FindBuiltin(arguments.front())) {
        shell.Print(HelpOnBuiltin(*builtin));
    } else {
        shell.Print(HelpOnNode(shell.NodeAt(arguments.front())));
    }
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
        {"ls", "[NODE]", "List what is in a node.", 0, 1, List, {{NODE}}},
        {"tree", "[NODE]", "Show everything below a node but its commands.", 0, 1, Tree, {{NODE}}},
        {"help", "[NODE|BUILT-IN]", "Explain a node or a built-in command.", 0, 1, Help, {{LINE}}},
        {"peek",
         "NODE [POSITION|FIRST..LAST]",
         "Read a value, or elements of an array; without a position all of them.",
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
         "Write the contents of a memory device to a file; --force replaces the file.",
         2,
         3,
         Export,
         {{MEMORY}, {FILE}, {WORD, {"--force"}}}},
        {"import",
         "NODE FILE [OFFSET] [--yes]",
         "Write a file into a memory device; shows what would change and asks, but for --yes.",
         2,
         4,
         Import,
         {{MEMORY}, {FILE}, {WORD, {"--yes"}}}},
        {"jobs",
         "",
         "List the background jobs; NODE [ARGUMENT...] & starts one.",
         0,
         0,
         ListJobs,
         {}},
        {"wait",
         "[JOB...]",
         "Wait for background jobs, without JOB for all; ends as the worst of them did.",
         0,
         ANY_NUMBER,
         WaitForJobs,
         {{JOB}}},
        {"stop",
         "[JOB|NODE...]",
         "Stop background jobs: one, those at or below a node, or without arguments all.",
         0,
         ANY_NUMBER,
         StopJobs,
         {{JOB}}},
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

EExitStatus RunBuiltin(const CBuiltin& builtin, CShell& shell, const CArguments& arguments) {
    if (arguments.size() < builtin.min_arguments || arguments.size() > builtin.max_arguments) {
        throw CUsageError(std::string(builtin.name) + ": " +
                          (arguments.size() < builtin.min_arguments ? "too few" : "too many") +
                          " arguments\nusage: " + builtin.name + " " + builtin.synopsis);
    }
    return builtin.run(shell, arguments);
}
