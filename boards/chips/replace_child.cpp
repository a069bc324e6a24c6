#include "boards/chips/replace_child.h"

#include <algorithm>
#include <string>
#include <vector>

#include "framework/diag_exception.h"

void ReplaceChild(CDiagObj& node, std::unique_ptr<CDiagObj> fresh) {
    const std::vector<CDiagObj*> children = node.GetChildren();
    const std::string name = fresh->GetName();
    const auto at = std::find_if(children.begin(), children.end(), [&name](const CDiagObj* child) {
        return name == child->GetName();
    });
    DIAG_ASSERT(at != children.end());
    node.RemoveChild((*at)->GetId());
    node.AddChild(fresh.release(), CDiagObj::NO_SORT);
    // Those behind it go behind it again.
    std::for_each(at + 1, children.end(), [&node](const CDiagObj* child) {
        node.AddChild(node.RemoveChild(child->GetId()).release(), CDiagObj::NO_SORT);
    });
}

void RemoveChildren(CDiagObj& node, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        if (const CDiagObj* child = node.FindChild(name)) {
            node.RemoveChild(child->GetId());
        }
    }
}
