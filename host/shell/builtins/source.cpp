#include "host/shell/builtins/source.h"

#include <cerrno>
#include <system_error>

#include "host/shell/input/line_reader.h"
#include "host/shell/printable.h"
#include "host/shell/script.h"
#include "host/shell/shell.h"
#include "host/shell/usage_error.h"

namespace {

// How deep scripts may run scripts: one that runs itself shall end with an error.
constexpr unsigned int DEEPEST = 16;

class CDepth {
  public:
    CDepth() { ++s_depth; }
    ~CDepth() { --s_depth; }
    CDepth(const CDepth&) = delete;
    CDepth& operator=(const CDepth&) = delete;

    static unsigned int Now() { return s_depth; }

  private:
    // Of the thread that runs the shell's lines; jobs run no scripts.
    inline static thread_local unsigned int s_depth = 0;
};

}  // namespace

EExitStatus Source(CShell& shell, const std::vector<std::string>& arguments) {
    const std::string& name = arguments.front();
    const CDepth depth;
    if (CDepth::Now() > DEEPEST) {
        throw CUsageError("source: " + Printable(name) + ": scripts run scripts only " +
                          std::to_string(DEEPEST) + " deep");
    }
    const CScriptFile file = OpenScript(name);
    if (file == nullptr) {
        throw CUsageError("source: " + Printable(name) + ": " +
                          std::generic_category().message(errno));
    }
    CStreamReader lines(file.get());
    return RunLines(shell, lines, name);
}
