// The entry point of the device-tree board.
#include <vector>

#include "boards/devicetree/board_arguments.h"
#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/file_bytes.h"
#include "framework/diag_board.h"

CDiagMenu* morva_board_create(int argc, const char* const* argv) {
    const CBoardArguments arguments = ParseBoardArguments(argc, argv);
    const std::vector<uint8_t> blob = ReadFileBytes(arguments.blob, CDeviceTree::MAX_SIZE);
    const CDeviceTree tree(arguments.blob, blob);
    return MountBoard(tree, arguments.blob.parent_path(), arguments.state).release();
}
