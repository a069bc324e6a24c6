// The built-ins that list the object tree.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// ls [-l] [NODE]: what is in a node.
EExitStatus List(CShell& shell, const std::vector<std::string>& arguments);
// tree [-a] [-l] [-d LEVELS] [NODE]: a node and what is below it.
EExitStatus Tree(CShell& shell, const std::vector<std::string>& arguments);
// find TEXT [NODE]: the nodes that have TEXT in their name or description.
EExitStatus Find(CShell& shell, const std::vector<std::string>& arguments);
