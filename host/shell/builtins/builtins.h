// The shell's own commands.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// What an argument names, for who completes what is typed.
enum class EArgument {
    WORD,       // none of the others, but perhaps one of a few words
    NODE,       // any node
    CONTAINER,  // a menu or a device
    ACCESS,     // a value or an array
    MEMORY,     // a memory device, or the array below it
    PATHNAME,   // a file
    JOB,        // the number of a job
    LINE,       // a command line of its own: this word and all that follow
};

struct CArgument {
    EArgument kind;
    std::vector<const char*> words = {};  // that may stand here instead
};

struct CBuiltin {
    const char* name;
    const char* synopsis;  // of the arguments
    const char* help;
    size_t min_arguments;
    size_t max_arguments;
    EExitStatus (*run)(CShell& shell, const std::vector<std::string>& arguments);
    // In order; the last stands for all that follow it too.
    std::vector<CArgument> arguments;
};

// All of them, in the order in which "help" lists them.
const std::vector<CBuiltin>& Builtins();
// The built-in of that name, or null.
const CBuiltin* FindBuiltin(const std::string& name);
const std::vector<std::string>& BuiltinNames();
// "usage: ls [-l] [NODE]"
std::string UsageOf(const CBuiltin& builtin);
// Checks the number of arguments, then runs it; throws CUsageError.
EExitStatus RunBuiltin(const CBuiltin& builtin, CShell& shell,
                       const std::vector<std::string>& arguments);
