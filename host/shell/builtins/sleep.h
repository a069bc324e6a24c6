// Lets time pass.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

EExitStatus Sleep(CShell& shell, const std::vector<std::string>& arguments);
