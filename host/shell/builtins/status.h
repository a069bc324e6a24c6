// One table of all tests and what became of them.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

EExitStatus Status(CShell& shell, const std::vector<std::string>& arguments);
