// What "help" tells about the shell's own commands, beside their synopsis and
// their one line in the list.
#pragma once

#include <string>
#include <vector>

struct CHelpExample {
    const char* command;
    const char* does;
};

struct CHelpText {
    const char* builtin;
    const char* group;
    const char* text;  // whole lines, none where the line in the list says it all
    std::vector<CHelpExample> examples;
};

// The groups, in the order in which they are listed.
const std::vector<const char*>& HelpGroups();
// The text for a built-in; null when there is none.
const CHelpText* FindHelpText(const std::string& builtin);
// How lines, words and numbers are written.
const char* SyntaxHelp();
