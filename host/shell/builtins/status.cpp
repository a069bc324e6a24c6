#include "host/shell/builtins/status.h"

#include <array>
#include <ctime>
#include <map>

#include "framework/diag_test_base.h"
#include "host/diag_tree.h"
#include "host/shell/shell.h"
#include "host/shell/table.h"
#include "host/usage_error.h"

namespace {

constexpr const char* RESET = "--reset";

void CollectTests(std::vector<const CDiagTestBase*>& tests, const CDiagObj& node) {
    if (const auto* test = dynamic_cast<const CDiagTestBase*>(&node)) {
        tests.push_back(test);
    }
    for (const CDiagObj* child : node.GetChildren()) {
        CollectTests(tests, *child);
    }
}

bool IsRunning(const CDiagTestBase& test) {
    const ETestStatus status = test.GetStatus();
    return status == DS_DEVACC || status == DS_SETUP || status == DS_PROGRESS;
}

std::string StateOf(const CDiagTestBase& test, const std::optional<CTestResult>& result) {
    if (IsRunning(test)) {
        return "running";
    }
    return result.has_value() ? result->last : "untested";
}

std::string LocalTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return text.data();
}

std::vector<std::string> RowOf(const CDiagTestBase& test, const std::string& state,
                               const std::optional<CTestResult>& result) {
    if (!result.has_value()) {
        return {PathOf(test), state, "", "", "", "", ""};
    }
    return {PathOf(test),
            state,
            std::to_string(result->passed),
            std::to_string(result->failed),
            std::to_string(result->aborted),
            std::to_string(result->skipped),
            LocalTime(result->ended)};
}

std::string Summary(const std::map<std::string, size_t>& states, size_t tests) {
    std::string text = std::to_string(tests) + (tests == 1 ? " test" : " tests");
    const char* separator = ": ";
    for (const auto& [state, count] : states) {
        text += separator + std::to_string(count) + " " + state;
        separator = ", ";
    }
    return text + "\n";
}

}  // namespace

EExitStatus Status(CShell& shell, const std::vector<std::string>& arguments) {
    if (!arguments.empty() && arguments.front() == RESET) {
        if (arguments.size() > 1) {
            throw CUsageError("status --reset forgets all results and takes no node");
        }
        shell.Results().Clear();
        return EXIT_PASSED;
    }
    const CDiagObj& top = shell.NodeAt(arguments.empty() ? "/" : arguments.front());
    std::vector<const CDiagTestBase*> tests;
    CollectTests(tests, top);
    if (tests.empty()) {
        shell.Print("there is no test in " + PathOf(top) + "\n");
        return EXIT_PASSED;
    }
    CTable table;
    table.Add({"TEST", "LAST", "PASSED", "FAILED", "ABORTED", "SKIPPED", "ENDED"});
    std::map<std::string, size_t> states;
    for (const CDiagTestBase* test : tests) {
        const std::optional<CTestResult> result = shell.Results().Of(test->GetId());
        const std::string state = StateOf(*test, result);
        table.Add(RowOf(*test, state, result));
        ++states[state];
    }
    shell.Print(table.Text(0) + Summary(states, tests.size()));
    return EXIT_PASSED;
}
