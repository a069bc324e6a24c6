#include "host/shell/builtins/source.h"

#include <cerrno>
#include <system_error>

#include "host/printable.h"
#include "host/shell/builtins/nesting.h"
#include "host/shell/input/line_reader.h"
#include "host/shell/script.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

EExitStatus Source(CShell& shell, const std::vector<std::string>& arguments) {
    const std::string& name = arguments.front();
    const CNesting nesting("source: " + Printable(name));
    const CScriptFile file = OpenScript(name);
    if (file == nullptr) {
        throw CUsageError("source: " + Printable(name) + ": " +
                          std::generic_category().message(errno));
    }
    CStreamReader lines(file.get());
    return RunLines(shell, lines, name);
}
