#include "host/shell/builtins/repeat.h"

#include <algorithm>
#include <chrono>
#include <limits>

#include "host/shell/builtins/nesting.h"
#include "host/shell/duration_text.h"
#include "host/shell/number.h"
#include "host/shell/run/run_note.h"
#include "host/shell/shell.h"
#include "host/shell/value_type.h"

namespace {

using CClock = std::chrono::steady_clock;

constexpr uint64_t MOST_RUNS = std::numeric_limits<uint32_t>::max();

// What the runs came to.
struct CTally {
    uint64_t runs = 0;
    uint64_t failed = 0;
    uint64_t aborted = 0;
    std::chrono::nanoseconds min = std::chrono::nanoseconds::max();
    std::chrono::nanoseconds max{0};
    std::chrono::nanoseconds sum{0};

    void Add(EExitStatus status, std::chrono::nanoseconds took) {
        ++runs;
        aborted += status == EXIT_ABORTED ? 1 : 0;
        failed += status != EXIT_PASSED && status != EXIT_ABORTED ? 1 : 0;
        min = std::min(min, took);
        max = std::max(max, took);
        sum += took;
    }
    std::chrono::nanoseconds Mean() const { return sum / static_cast<int64_t>(runs); }
};

void Print(CShell& shell, const CTally& tally) {
    shell.Terminal().EndLine();
    if (tally.runs == 0) {
        shell.Print("repeat: 0 runs\n");
        return;
    }
    std::string text = "repeat: " + std::to_string(tally.runs) +
                       (tally.runs == 1 ? " run, " : " runs, ") + std::to_string(tally.failed) +
                       " failed";
    if (tally.aborted != 0) {
        text += ", " + std::to_string(tally.aborted) + " aborted";
    }
    text += "; min " + DurationText(tally.min) + ", mean " + DurationText(tally.Mean()) + ", max " +
            DurationText(tally.max) + "\n";
    shell.Print(text);

    const auto note = [&shell](const char* name, uint64_t value) {
        shell.Recorder().NoteOutput(name, CValueType(VT_UINT64), {std::to_string(value), value});
    };
    note("runs", tally.runs);
    note("failed", tally.failed);
    note("aborted", tally.aborted);
    note("min-ns", static_cast<uint64_t>(tally.min.count()));
    note("mean-ns", static_cast<uint64_t>(tally.Mean().count()));
    note("max-ns", static_cast<uint64_t>(tally.max.count()));
}

// One word may be a whole line: repeat 3 'probe; sleep 1'.
EExitStatus RunOnce(CShell& shell, const std::vector<std::string>& words) {
    return words.size() == 1 ? shell.Execute(words.front(), shell.Origin())
                             : shell.ExecuteWords(words);
}

}  // namespace

EExitStatus Repeat(CShell& shell, const std::vector<std::string>& arguments) {
    const bool until_fail = arguments.front() == "until-fail";
    const uint64_t count = until_fail
                               ? MOST_RUNS
                               : ParseUnsigned(arguments.front(), MOST_RUNS,
                                               "until-fail or 0 to " + std::to_string(MOST_RUNS));
    const std::vector<std::string> words(arguments.begin() + 1, arguments.end());

    const CNesting nesting("repeat");
    CTally tally;
    EExitStatus worst = EXIT_PASSED;
    while (tally.runs < count && !shell.IsInterrupted() && !shell.HasQuit() &&
           !(until_fail && worst != EXIT_PASSED)) {
        CRunNote::Count(tally.runs, until_fail ? 0 : count);
        const CClock::time_point began = CClock::now();
        const EExitStatus status = RunOnce(shell, words);
        if (status == EXIT_USAGE) {
            // It would be refused again and again.
            worst = status;
            break;
        }
        tally.Add(status, CClock::now() - began);
        worst = Worse(worst, status);
    }
    if (tally.runs != 0 || worst != EXIT_USAGE) {
        Print(shell, tally);
    }
    return shell.IsInterrupted() ? EXIT_ABORTED : worst;
}
