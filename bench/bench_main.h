// What the main function of every benchmark program is made of.
#pragma once

#include <cstdio>
#include <exception>
#include <functional>

#include "framework/diag_exception.h"

// Returns what `run` returns; prints what it throws, and returns 1 then.
inline int BenchMain(const std::function<int()>& run) {
    try {
        return run();
    } catch (const CDiagException& e) {
        std::fprintf(stderr, "%s\n", e.what());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
    }
    return 1;
}
