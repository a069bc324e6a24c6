// Loads the board, a shared object, and has it build its tree.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/diag_menu.h"

// The board that is installed beside the program.
std::string DefaultBoard();

// Throws CDiagException that names the file and says what is wrong. The board
// stays loaded until the program ends: its classes are needed to the last.
std::unique_ptr<CDiagMenu> LoadBoard(const std::string& file,
                                     const std::vector<std::string>& arguments);
