// Feeds the shell: commands of the command line, of scripts, or of a terminal.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CInterrupt;
class CShell;
class ILineReader;

// Each of them stops at the first failure, at Ctrl-C, or when its output gets
// lost, and returns the status of the run.
EExitStatus RunCommands(CShell& shell, CInterrupt& interrupt,
                        const std::vector<std::string>& commands);
EExitStatus RunScript(CShell& shell, CInterrupt& interrupt, ILineReader& lines,
                      const std::string& name);
// Goes on after failures, until "quit" or the end of input.
EExitStatus RunTerminal(CShell& shell, CInterrupt& interrupt, ILineReader& lines);
