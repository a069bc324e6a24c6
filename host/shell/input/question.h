// A question to the operator that wants a yes.
#pragma once

#include <string>

class CShell;

enum class EAnswer {
    YES,
    NO,           // anything else, the end of input too
    INTERRUPTED,  // by Ctrl-C
};

// Whether somebody sits at standard input.
bool CanAsk();
// Prints the question and reads a line of standard input, whatever feeds the
// shell its commands.
EAnswer Ask(CShell& shell, const std::string& question);
