// The built-in "log": which log texts the terminal shows.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// The words that it knows, for completion.
std::vector<const char*> LogWords();

EExitStatus ChooseLog(CShell& shell, const std::vector<std::string>& arguments);
