// The built-in for the lines that were typed.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// history [COUNT|TEXT]: lists the last lines, or those that have a text in them.
EExitStatus ListHistory(CShell& shell, const std::vector<std::string>& arguments);
