// The world outside of a register chip as nodes: a menu with a value for each thing that it
// gives the chip or sees of it.
#pragma once

#include <memory>
#include <string>

#include "boards/sim/sim_registers.h"
#include "framework/diag_menu.h"

// The chip must outlive every use of the nodes.
std::unique_ptr<CDiagMenu> CreateOutsideMenu(const std::string& name, CSimRegisters& chip);
