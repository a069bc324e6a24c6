#include "host/diag_tree.h"

#include <algorithm>

CDiagObj& RootOf(CDiagObj& node) {
    CDiagObj* root = &node;
    while (root->GetParent() != nullptr) {
        root = root->GetParent();
    }
    return *root;
}

const CDiagObj& RootOf(const CDiagObj& node) {
    return RootOf(const_cast<CDiagObj&>(node));
}

std::string PathOf(const CDiagObj& node) {
    if (node.GetParent() == nullptr) {
        return "/";
    }
    std::string path;
    for (const CDiagObj* at = &node; at->GetParent() != nullptr; at = at->GetParent()) {
        path.insert(0, std::string("/") + at->GetName());
    }
    return path;
}

CDiagObj* FindByPath(CDiagObj& from, const std::string& path) {
    CDiagObj* node = !path.empty() && path.front() == '/' ? &RootOf(from) : &from;
    size_t begin = 0;
    while (begin < path.size() && node != nullptr) {
        const size_t end = std::min(path.find('/', begin), path.size());
        const std::string name = path.substr(begin, end - begin);
        begin = end + 1;
        if (name.empty() || name == ".") {
            continue;
        }
        if (name == "..") {
            // As in a file system, the root is its own parent.
            node = node->GetParent() != nullptr ? node->GetParent() : node;
        } else {
            node = node->FindChild(name);
        }
    }
    return node;
}

CDiagObj* FindById(CDiagObj& root, unsigned int id) {
    if (root.GetId() == id) {
        return &root;
    }
    for (CDiagObj* child : root.GetChildren()) {
        if (CDiagObj* found = FindById(*child, id)) {
            return found;
        }
    }
    return nullptr;
}
