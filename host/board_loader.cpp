#include "host/board_loader.h"

#include <dlfcn.h>

#include <filesystem>

#include "framework/diag_board.h"
#include "framework/diag_exception.h"

std::string DefaultBoard() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path folder = program.parent_path() / MORVA_LIBRARIES_FROM_PROGRAM;
    return (folder / "libmorva-board.so").lexically_normal().string();
}

std::unique_ptr<CDiagMenu> LoadBoard(const std::string& file,
                                     const std::vector<std::string>& arguments) {
    void* board = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (board == nullptr) {
        throw CDiagException("board cannot be loaded: %s", ::dlerror());
    }
    const auto create = reinterpret_cast<morva_board_create_t>(::dlsym(board, MORVA_BOARD_ENTRY));
    if (create == nullptr) {
        throw CDiagException("board %s is not one: it has no %s", file.c_str(), MORVA_BOARD_ENTRY);
    }
    std::vector<const char*> argv{file.c_str()};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    const auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);
    std::unique_ptr<CDiagMenu> root(create(argc, argv.data()));
    if (root == nullptr) {
        throw CDiagException("board %s built no tree", file.c_str());
    }
    return root;
}
