// Does a command again and again, and tells how often it failed and how long it took.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

EExitStatus Repeat(CShell& shell, const std::vector<std::string>& arguments);
