// The shell's own commands.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

struct CBuiltin {
    const char* name;
    const char* synopsis;  // of the arguments
    const char* help;
    size_t min_arguments;
    size_t max_arguments;
    EExitStatus (*run)(CShell& shell, const std::vector<std::string>& arguments);
};

// All of them, in the order in which "help" lists them.
const std::vector<CBuiltin>& Builtins();
// The built-in of that name, or null.
const CBuiltin* FindBuiltin(const std::string& name);
// Checks the number of arguments, then runs it; throws CUsageError.
EExitStatus RunBuiltin(const CBuiltin& builtin, CShell& shell,
                       const std::vector<std::string>& arguments);
