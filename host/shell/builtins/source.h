// Runs a script from within the shell.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

EExitStatus Source(CShell& shell, const std::vector<std::string>& arguments);
