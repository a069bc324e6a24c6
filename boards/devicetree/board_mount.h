// From a device tree to the object tree of a simulated board: a root menu, the
// buses below it, multiplexers and their channel menus below these, and devices
// where they hang. The node "sim" stands beside the buses.
#pragma once

#include <filesystem>
#include <memory>

#include "boards/devicetree/device_tree.h"
#include "framework/diag_menu.h"

// Memories live in files below `state`, at their place in the topology, and
// begin with what the file of the same place below `folder`/images holds; tables
// of the board are in `folder`/xml. A node that
// cannot be mounted is reported with one warning and left out; the rest is
// mounted. A device behind a multiplexer whose address answers nearer to the root
// bus too is mounted, with a warning. The tree is needed no longer afterwards.
// Throws CDiagException while another process has memories in the folder `state`.
std::unique_ptr<CDiagMenu> MountBoard(const CDeviceTree& tree, const std::filesystem::path& folder,
                                      const std::filesystem::path& state);
