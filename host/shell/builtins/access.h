// Peek and poke: values and arrays of the tree, read and written by position.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CDiagObj;
class CShell;

// The built-ins. Each checks everything it was given before it sends a request.
EExitStatus Peek(CShell& shell, const std::vector<std::string>& arguments);
EExitStatus Poke(CShell& shell, const std::vector<std::string>& arguments);

// Type, positions and access of a value or an array, and how to use it.
std::string HelpOnAccess(CDiagObj& node);
