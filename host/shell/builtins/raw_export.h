// "export": the contents of a memory device as a file.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// The built-in. Checks everything it was given before it reads the device.
EExitStatus Export(CShell& shell, const std::vector<std::string>& arguments);
