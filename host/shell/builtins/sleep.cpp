#include "host/shell/builtins/sleep.h"

#include <poll.h>

#include <charconv>
#include <chrono>
#include <cmath>

#include "host/printable.h"
#include "host/shell/run/interrupt.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

constexpr double LONGEST_S = 86400;

std::chrono::milliseconds ParseSeconds(const std::string& word) {
    double seconds = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(seconds >= 0 && seconds <= LONGEST_S)) {
        throw CUsageError("sleep: \"" + Printable(word) +
                          "\" is not a time; seconds, 0 to 86400, as 2 or 0.5, fit");
    }
    return std::chrono::milliseconds(std::lround(seconds * 1000));
}

}  // namespace

EExitStatus Sleep(CShell& shell, const std::vector<std::string>& arguments) {
    using CClock = std::chrono::steady_clock;
    const CClock::time_point end = CClock::now() + ParseSeconds(arguments.front());
    pollfd interrupted{shell.Interrupt().Descriptor(), POLLIN, 0};
    while (!shell.IsInterrupted()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - CClock::now()).count();
        if (left <= 0) {
            return EXIT_PASSED;
        }
        ::poll(&interrupted, 1, static_cast<int>(left));
    }
    return shell.ReportError("sleep: aborted", EXIT_ABORTED);
}
