#include "tests/support/request.h"

#include <stdexcept>

#include "host/diag_tree.h"

CDiagMenu& NodeAt(CDiagObj& root, const std::string& path) {
    auto* node = dynamic_cast<CDiagMenu*>(FindByPath(root, path));
    if (node == nullptr) {
        throw std::runtime_error("no node at " + path);
    }
    return *node;
}
