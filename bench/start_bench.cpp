// From the start of diagsh to its first prompt, on a terminal, with a board of
// 500 nodes and a full history; beside it what any process costs, for which
// stands a program that does nothing but print its version.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "bench/median.h"
#include "bench/program.h"
#include "host/shell/input/history.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr double MOST_MS = 20.0;
constexpr int RUNS = 51;

// What the user of many years has.
void FillHistory() {
    const std::filesystem::path file = DefaultHistoryFile();
    std::filesystem::create_directories(file.parent_path());
    std::vector<uint8_t> lines;
    for (size_t i = 0; i < CHistory::KEPT; ++i) {
        const std::string line = "/i2c-0/trans rd 0x50 2 0 0 " + std::to_string(i) + "\n";
        lines.insert(lines.end(), line.begin(), line.end());
    }
    WriteFile(file, lines);
}

int Run() {
    const CTempFolder state;
    ::setenv("XDG_STATE_HOME", state.Path().c_str(), 1);
    ::setenv("TERM", "xterm", 1);
    FillHistory();

    std::vector<double> prompt_ms;
    std::vector<double> diagsh_cpu_ms;
    std::vector<double> floor_ms;
    std::vector<double> floor_cpu_ms;
    for (int i = 0; i < RUNS; ++i) {
        CTerminalProgram diagsh({DIAGSH, "--board", NUMBERED_BOARD, "--", "500"});
        prompt_ms.push_back(diagsh.AwaitText("/> "));
        diagsh.Type("quit\n");
        diagsh_cpu_ms.push_back(diagsh.AwaitEnd().cpu_ms);
        const CProcessCost floor = RunProgram({I2CGET, "-V"});
        floor_ms.push_back(floor.elapsed_ms);
        floor_cpu_ms.push_back(floor.cpu_ms);
    }
    std::printf("%-34s %8s %8s\n", "", "elapsed", "CPU");
    std::printf("%-34s %5.2f ms %5.2f ms\n", "diagsh, to the prompt (CPU: to quit)",
                Median(prompt_ms), Median(diagsh_cpu_ms));
    std::printf("%-34s %5.2f ms %5.2f ms\n", "i2cget -V, to its end", Median(floor_ms),
                Median(floor_cpu_ms));
    std::printf("the start is that of %.1f such processes\n", Median(prompt_ms) / Median(floor_ms));
    return CBenchReport::Judge("start to first prompt, ms", Median(prompt_ms), MOST_MS) ? 0 : 1;
}

}  // namespace

int main() {
    return BenchMain(Run);
}
