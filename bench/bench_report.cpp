#include "bench/bench_report.h"

#include <cstdio>
#include <vector>

bool CBenchReport::RunAll(int argc, char** argv) {
    // What the user gives comes later and wins.
    std::vector<std::string> words = {argv[0], "--benchmark_repetitions=9",
                                      "--benchmark_enable_random_interleaving=true",
                                      "--benchmark_report_aggregates_only=true"};
    words.insert(words.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    int count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) {
        return false;
    }
    benchmark::RunSpecifiedBenchmarks(this);
    benchmark::Shutdown();
    return !m_failed && !m_median_ns.empty();
}

void CBenchReport::ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const benchmark::BenchmarkReporter::Run& run : runs) {
        m_failed = m_failed || run.error_occurred;
        if (run.aggregate_name != "median") {
            continue;
        }
        const std::string name = run.run_name.str();
        m_median_ns[name] =
            run.GetAdjustedCPUTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
        for (const auto& [counter, value] : run.counters) {
            m_counters[name][counter] = value;
        }
    }
}

bool CBenchReport::Judge(const std::string& what, double ratio, double most) {
    const bool ok = ratio <= most;
    std::printf("%s: %.2f, at most %.2f%s\n", what.c_str(), ratio, most, ok ? "" : ": TOO MUCH");
    return ok;
}
