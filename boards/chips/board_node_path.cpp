#include "boards/chips/board_node_path.h"

std::string NodePath(const CDiagObj& node) {
    std::string path;
    for (const CDiagObj* at = &node; at->GetParent() != nullptr; at = at->GetParent()) {
        path.insert(0, std::string("/") + at->GetName());
    }
    return path.empty() ? "/" : path;
}
