// The entry point of a board: any shared object that exports it can be loaded.
#pragma once

#include "framework/diag_menu.h"

extern "C" {

// Builds the board's tree and returns its root menu, which the host then owns.
// `argv[0]` is the board's file, the rest its own arguments. A board that
// cannot be built throws CDiagException with a text for the operator; parts of
// it that cannot be mounted are reported with diag_pf_send_log and left out.
CDiagMenu* morva_board_create(int argc, const char* const* argv);

}  // extern "C"

// The type and name under which the host looks the entry point up.
using morva_board_create_t = CDiagMenu* (*)(int argc, const char* const* argv);
inline constexpr char MORVA_BOARD_ENTRY[] = "morva_board_create";
