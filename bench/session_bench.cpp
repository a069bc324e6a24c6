// What a read costs in one session of diagsh, against a process for each: of
// that, the floor is a process that only prints its version.
#include <sys/resource.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_main.h"
#include "bench/bench_report.h"
#include "bench/median.h"
#include "bench/program.h"
#include "tests/support/temp_folder.h"

namespace {

using CWords = std::vector<std::string>;

constexpr double LEAST = 100;  // reads for the cost of a process
constexpr int READS = 100'000;
constexpr int ROUNDS = 9;
constexpr int PROCESSES = 200;  // in a round

// Each reads an EEPROM on a simulated bus READS times, with a transfer for each
// byte. The quick chip costs next to nothing, so that what is measured is the way
// to it; the simulated one opens and reads its file for every transfer.
struct CUse {
    const char* name;
    CWords words;
    bool judged;
};

std::vector<CUse> Uses(const std::string& state) {
    const CWords quick = {DIAGSH, "--board", QUICK_BOARD, "-c"};
    const CWords simulated = {DIAGSH, "--sim", QUILLBANK_DTB, "--state", state, "-c"};
    const auto with = [](CWords words, const char* command) {
        words.emplace_back(command);
        return words;
    };
    return {
        {"commands, quick chip", with(quick, "repeat 100000 peek /i2c-0/eeprom/memory 5"), true},
        {"commands, simulated chip",
         with(simulated, "repeat 100000 peek /i2c-0/mfg-eeprom/memory 5"), false},
        {"ranges, quick chip", with(quick, "repeat 20 peek /i2c-0/eeprom/memory 0..4999"), true},
        {"ranges, simulated chip",
         with(simulated, "repeat 20 peek /i2c-0/mfg-eeprom/memory 0..4999"), true},
    };
}

// Of this process, which has to start others.
double OwnCpuMs() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return MsOf(usage);
}

double ProcessUs() {
    double ms = -OwnCpuMs();
    for (int i = 0; i < PROCESSES; ++i) {
        ms += RunProgram({I2CGET, "-V"}).cpu_ms;
    }
    ms += OwnCpuMs();
    return ms * 1e3 / PROCESSES;
}

// Start and end of the session are part of it.
double ReadUs(const CUse& use) {
    return RunProgram(use.words).cpu_ms * 1e3 / READS;
}

int Run() {
    const CTempFolder state;
    const std::vector<CUse> uses = Uses(state.Path());
    std::vector<double> process_us;
    std::vector<std::vector<double>> read_us(uses.size());
    for (int round = 0; round < ROUNDS; ++round) {
        process_us.push_back(ProcessUs());
        for (size_t i = 0; i < uses.size(); ++i) {
            read_us[i].push_back(ReadUs(uses[i]));
        }
    }
    const double process = Median(process_us);
    std::printf("%-26s %8s %14s\n", "", "CPU", "for a process");
    std::printf("%-26s %5.0f us\n", "a process (i2cget -V)", process);
    bool ok = true;
    for (size_t i = 0; i < uses.size(); ++i) {
        const double read = Median(read_us[i]);
        std::printf("%-26s %5.2f us %14.0f\n", uses[i].name, read, process / read);
    }
    for (size_t i = 0; i < uses.size(); ++i) {
        if (uses[i].judged) {
            ok = CBenchReport::Judge(std::string("100 reads / a process, ") + uses[i].name,
                                     LEAST * Median(read_us[i]) / process, 1.0) &&
                 ok;
        }
    }
    return ok ? 0 : 1;
}

}  // namespace

int main() {
    return BenchMain(Run);
}
