// From a device tree to the object tree of a board: a root menu, the buses below it,
// multiplexers and their channel menus below these, and devices where they hang.
#pragma once

#include <filesystem>
#include <memory>

#include "boards/devicetree/board_hardware.h"
#include "boards/devicetree/device_tree.h"
#include "framework/diag_menu.h"

// `tables` is the folder of the board's XML tables. A node that cannot be mounted is
// reported with one warning and left out; the rest is mounted. Nodes that are disabled,
// or off the buses and not known, are left out as well; the command "left-out" lists all
// of them. A device behind a multiplexer whose address answers nearer to the root bus too
// is mounted, with a warning. Tree and hardware are needed no longer afterwards.
// Throws CDiagException while another process has the hardware's state folder.
std::unique_ptr<CDiagMenu> MountBoard(const CDeviceTree& tree, const std::filesystem::path& tables,
                                      IBoardHardware& hardware);
