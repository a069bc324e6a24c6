// "import": a file as the contents of a memory device.
#pragma once

#include <string>
#include <vector>

#include "host/shell/exit_status.h"

class CShell;

// The built-in. Checks everything it was given before it touches the device,
// writes only what differs, and reads back what it wrote.
EExitStatus Import(CShell& shell, const std::vector<std::string>& arguments);
