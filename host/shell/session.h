// Feeds the shell: commands of the command line, of scripts, or of a terminal.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;
class ILineReader;

// Each of them stops at the first failure, unless the shell is to keep going, at
// Ctrl-C, or when its output gets lost, and returns the worst status of the run.
EExitStatus RunCommands(CShell& shell, const std::vector<std::string>& commands);
EExitStatus RunScript(CShell& shell, ILineReader& lines, const std::string& name);
// Goes on after failures, until "quit" or the end of input.
EExitStatus RunTerminal(CShell& shell, ILineReader& lines);
