// "help" and its texts.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// help [NODE|BUILT-IN|syntax]
EExitStatus Help(CShell& shell, const std::vector<std::string>& arguments);
