// What diagsh and each of its commands end with.
#pragma once

enum EExitStatus : int {
    EXIT_PASSED = 0,
    EXIT_FAILED = 1,   // a command or a test failed
    EXIT_USAGE = 2,    // nothing was done: the input was wrong
    EXIT_ABORTED = 3,  // stopped by the operator
    EXIT_HOST = 4,     // the host or the board could not start
};

// The worse of two results: a failure tells more than an abort.
inline EExitStatus Worse(EExitStatus a, EExitStatus b) {
    if (a == EXIT_PASSED || b == EXIT_PASSED) {
        return a == EXIT_PASSED ? b : a;
    }
    return a == EXIT_ABORTED ? b : a;
}
