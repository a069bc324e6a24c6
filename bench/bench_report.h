// Runs the benchmarks of a program several times, mixed, and compares their
// medians.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

class CBenchReport : public benchmark::ConsoleReporter {
  public:
    // Takes the program's arguments, runs everything and prints it. False when
    // an argument is none, or when a benchmark failed.
    bool RunAll(int argc, char** argv);

    // Of the benchmark of that name, as "Mount/chips/100"; throws when it did not run.
    double MedianNs(const std::string& name) const { return m_median_ns.at(name); }
    double Counter(const std::string& name, const std::string& counter) const {
        return m_counters.at(name).at(counter);
    }

    // Prints what was measured against what is allowed; true when it is.
    static bool Judge(const std::string& what, double ratio, double most);

    void ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run>& runs) override;

  private:
    std::map<std::string, double> m_median_ns;
    std::map<std::string, std::map<std::string, double>> m_counters;
    bool m_failed = false;
};
