// The entry point of the device-tree board.
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "boards/devicetree/adapter_board.h"
#include "boards/devicetree/board_arguments.h"
#include "boards/devicetree/board_mount.h"
#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/file_bytes.h"
#include "boards/devicetree/linux_hardware.h"
#include "boards/devicetree/sim_hardware.h"
#include "framework/diag_board.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "i2c/param_eeprom_cmd.h"

namespace {

// What a simulated board begins with, and its tables, stand beside its blob.
constexpr const char* IMAGES = "images";
constexpr const char* TABLES = "xml";

// The blob that the running kernel started with.
std::filesystem::path KernelBlob() {
    const std::filesystem::path blob =
        std::filesystem::path(CI2cSysfs::DefaultRoot()) / "firmware" / "fdt";
    if (::access(blob.c_str(), R_OK) != 0) {
        throw CDiagException(
            "%s: %s: this machine's device tree cannot be read. Name a blob with --dtb FILE, mount "
            "the machine's I2C adapters without one with --i2c, or simulate a board with --sim "
            "FILE",
            blob.c_str(), GetErrorStr(errno).c_str());
    }
    return blob;
}

// Those of the board where it has some, else those that are installed.
std::filesystem::path TablesOf(const std::filesystem::path& blob) {
    const std::filesystem::path own = blob.parent_path() / TABLES;
    return std::filesystem::is_directory(own)
               ? own
               : std::filesystem::path(CParamEepromCmd::DEFAULT_FILE).parent_path();
}

CDiagMenu* CreateFrom(const std::filesystem::path& blob, const CBoardArguments& arguments) {
    const std::vector<uint8_t> bytes = ReadFileBytes(blob, CDeviceTree::MAX_SIZE);
    const CDeviceTree tree(blob, bytes);
    if (arguments.kind == EBoardKind::SIMULATED) {
        const std::filesystem::path folder = blob.parent_path();
        CSimHardware hardware(folder / IMAGES, arguments.state);
        return MountBoard(tree, folder / TABLES, hardware).release();
    }
    CLinuxHardware hardware(tree, CI2cSysfs(), arguments.buses);
    return MountBoard(tree, TablesOf(blob), hardware).release();
}

}  // namespace

CDiagMenu* morva_board_create(int argc, const char* const* argv) {
    const CBoardArguments arguments = ParseBoardArguments(argc, argv);
    if (arguments.kind == EBoardKind::ADAPTERS) {
        return MountAdapters(CI2cSysfs()).release();
    }
    return CreateFrom(arguments.blob.empty() ? KernelBlob() : arguments.blob, arguments);
}
