// What diagsh and each of its commands end with.
#pragma once

#include <algorithm>
#include <array>

enum EExitStatus : int {
    EXIT_PASSED = 0,
    EXIT_FAILED = 1,   // a command or a test failed
    EXIT_USAGE = 2,    // nothing was done: the input was wrong
    EXIT_ABORTED = 3,  // stopped by the operator
    EXIT_HOST = 4,     // the host or the board could not start
};

// The worse of two results. A failure tells more than a line that was refused,
// and that more than an abort.
constexpr EExitStatus Worse(EExitStatus a, EExitStatus b) {
    constexpr std::array BY_WEIGHT = {EXIT_PASSED, EXIT_ABORTED, EXIT_USAGE, EXIT_FAILED,
                                      EXIT_HOST};
    const auto weight = [&](EExitStatus status) {
        return std::find(BY_WEIGHT.begin(), BY_WEIGHT.end(), status);
    };
    return weight(a) < weight(b) ? b : a;
}
