// How deep commands that run commands may run each other: a script that runs
// itself shall end with an error.
#pragma once

#include <string>

#include "host/usage_error.h"

// One level, for a scope.
class CNesting {
  public:
    static constexpr unsigned int DEEPEST = 16;

    // Throws CUsageError, behind what `name` says, when it is too deep.
    explicit CNesting(const std::string& name) {
        if (s_depth == DEEPEST) {
            throw CUsageError(name + ": source and repeat nest only " + std::to_string(DEEPEST) +
                              " deep");
        }
        ++s_depth;
    }
    ~CNesting() { --s_depth; }
    CNesting(const CNesting&) = delete;
    CNesting& operator=(const CNesting&) = delete;

  private:
    // Of the thread that runs the shell's lines; jobs run neither.
    inline static thread_local unsigned int s_depth = 0;
};
