#include "host/shell/builtins/scan.h"

#include <algorithm>

#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/builtins/builtins.h"
#include "host/shell/builtins/scan_picture.h"
#include "host/shell/builtins/scan_run.h"
#include "host/shell/builtins/scan_wires.h"
#include "host/shell/node_kind.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

struct CScanWords {
    std::string node = ".";
    CScanOptions options;
};

[[noreturn]] void Refuse(const std::string& error) {
    throw CUsageError("scan: " + error + "\n" + UsageOf(*FindBuiltin("scan")));
}

void TakeOption(char letter, const std::string& word, CScanOptions& options) {
    switch (letter) {
        case 'a':
            options.first = 0;
            options.last = CScannedWire::ADDRESSES - 1;
            return;
        case 'q':
        case 'r':
            if (options.access.has_value()) {
                Refuse("-q or -r, not both");
            }
            options.access = letter == 'q' ? EScanAccess::QUICK_WRITE : EScanAccess::RECEIVE_BYTE;
            return;
        default:
            Refuse("there is no option " + Printable(word));
    }
}

CScanWords ParseWords(const std::vector<std::string>& arguments) {
    CScanWords words;
    bool has_node = false;
    for (const std::string& word : arguments) {
        if (word.size() > 1 && word.front() == '-') {
            for (const char letter : word.substr(1)) {
                TakeOption(letter, word, words.options);
            }
        } else if (has_node) {
            Refuse("too many arguments");
        } else {
            words.node = word;
            has_node = true;
        }
    }
    return words;
}

bool HasFailed(const std::vector<CScannedWire>& results) {
    return std::any_of(results.begin(), results.end(), [](const CScannedWire& wire) {
        return !wire.error.empty() || wire.Has(EScanMark::FAILED);
    });
}

}  // namespace

EExitStatus Scan(CShell& shell, const std::vector<std::string>& arguments) {
    const CScanWords words = ParseWords(arguments);
    CDiagObj& top = shell.NodeAt(words.node);
    std::vector<CScanWire> wires = FindScanWires(top);
    if (std::none_of(wires.begin(), wires.end(),
                     [](const CScanWire& wire) { return wire.is_shown; })) {
        throw CUsageError(PathOf(top) + " is " + DescribeType(top) +
                          " with no bus in it; scan takes a bus, a multiplexer, a channel, or "
                          "what they are in");
    }
    CScanRun run(shell, std::move(wires), words.options);
    const bool complete = run.Run();
    const std::vector<CScannedWire> results = run.Results();
    shell.Recorder().NoteScan(results);
    shell.Print(ScanPicture(results));
    if (!complete) {
        return shell.ReportError("scan: aborted", EXIT_ABORTED);
    }
    if (HasFailed(results)) {
        return shell.ReportError("scan: not everything could be asked", EXIT_FAILED);
    }
    return EXIT_PASSED;
}
