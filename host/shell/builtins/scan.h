// "scan": which addresses answer, on the buses and behind their multiplexers.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

EExitStatus Scan(CShell& shell, const std::vector<std::string>& arguments);
