// What Tab costs among 10,000 siblings: finding what fits and, where several do,
// laying out the list that is shown.
#include <cstdio>
#include <memory>
#include <string>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "framework/diag_board.h"
#include "host/log_filter.h"
#include "host/shell/input/candidates.h"
#include "host/shell/input/completion.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"
#include "host/terminal.h"

namespace {

constexpr double MOST_MS = 50.0;
constexpr size_t SIBLINGS = 10'000;
constexpr unsigned int COLUMNS = 80;

std::unique_ptr<CDiagMenu> MakeBoard() {
    const std::string count = std::to_string(SIBLINGS);
    const char* const arguments[] = {"completion_bench", count.c_str(), nullptr};
    return std::unique_ptr<CDiagMenu>(morva_board_create(2, arguments));
}

CShell& Shell() {
    static const std::unique_ptr<CDiagMenu> root = MakeBoard();
    static CTerminal terminal(stdout);
    static CInterrupt interrupt;
    static CLogFilter filter;
    static CShell shell(*root, terminal, interrupt, filter);
    return shell;
}

void Tab(benchmark::State& state, const std::string& line, size_t matches) {
    const CShell& shell = Shell();
    for ([[maybe_unused]] auto _ : state) {
        const CCompletion found = Complete(shell, line, line.size());
        if (found.count != matches) {
            state.SkipWithError("other nodes match than should");
            return;
        }
        if (matches > 1) {
            benchmark::DoNotOptimize(
                InColumns(found.candidates, found.count - found.candidates.size(), COLUMNS));
        }
    }
}
BENCHMARK_CAPTURE(Tab, one, "node-009999", 1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Tab, all, "node-00", SIBLINGS)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Tab, all_as_argument, "repeat 2 /node-00", SIBLINGS)
    ->Unit(benchmark::kMicrosecond);

int Run(int argc, char** argv) {
    CBenchReport report;
    if (!report.RunAll(argc, argv)) {
        return 1;
    }
    bool ok = true;
    for (const std::string matches : {"one", "all", "all_as_argument"}) {
        ok = CBenchReport::Judge("Tab among 10,000, " + matches + ", ms",
                                 report.MedianNs("Tab/" + matches) / 1e6, MOST_MS) &&
             ok;
    }
    return ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return BenchMain([&] { return Run(argc, argv); });
}
