#include "host/shell/builtins/raw_export.h"

#include "host/exception_text.h"
#include "host/printable.h"
#include "host/shell/builtins/device_use.h"
#include "host/shell/builtins/raw_arguments.h"
#include "host/shell/builtins/raw_file.h"
#include "host/shell/builtins/raw_node.h"
#include "host/shell/builtins/raw_ranges.h"
#include "host/shell/run/run_note.h"
#include "host/shell/shell.h"

EExitStatus Export(CShell& shell, const std::vector<std::string>& arguments) {
    const CRawArguments words("export", arguments, "--force", 2, 2);
    const CRawNode node = CRawNode::At(shell, words[0]);
    CRawOutput file(words[1], words.HasOption());
    std::vector<byte_t> contents(node.Size());
    const auto go_on = [&](size_t done) {
        CRunNote::Count(done, contents.size());
        return !shell.IsInterrupted();
    };
    try {
        const CDeviceUse use(shell, node.Device(), DEV_LOCK_ACCESS);
        if (!use.IsHeld() || !node.Read(0, contents, go_on)) {
            return shell.ReportFailure(node.Device(), "export aborted, no file was written",
                                       EXIT_ABORTED);
        }
        file.Finish(contents);
    } catch (...) {
        return shell.ReportFailure(node.Device(),
                                   "export failed, no file was written: " + CurrentExceptionText(),
                                   EXIT_FAILED);
    }
    shell.Print("exported " + Count(contents.size(), "byte") + " from " + node.Path() + " to " +
                Printable(words[1]) + "\n");
    return EXIT_PASSED;
}
