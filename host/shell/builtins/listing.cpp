#include "host/shell/builtins/listing.h"

#include <algorithm>
#include <vector>

#include "framework/diag_obj.h"
#include "host/diag_tree.h"
#include "host/shell/node_kind.h"
#include "host/shell/printable.h"

namespace {

// A listed node: what stands left and right in its line.
struct CEntry {
    std::string name;
    std::string description;
};

std::string Lines(const std::vector<CEntry>& entries) {
    size_t width = 0;
    for (const CEntry& entry : entries) {
        width = std::max(width, entry.name.size());
    }
    std::string text;
    for (const CEntry& entry : entries) {
        text += entry.name;
        if (!entry.description.empty()) {
            text += std::string(width + 2 - entry.name.size(), ' ') + entry.description;
        }
        text += '\n';
    }
    return text;
}

CEntry EntryOf(const CDiagObj& node, const std::string& name) {
    return {Printable(name) + TypeMark(node), Printable(node.GetDescription())};
}

void AddTree(std::vector<CEntry>& entries, const CDiagObj& node, const std::string& indent) {
    for (const CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() != TPARAM && child->GetNodeType() != TFUNC) {
            CEntry entry = EntryOf(*child, child->GetName());
            entry.name.insert(0, indent);
            entries.push_back(entry);
            AddTree(entries, *child, indent + "  ");
        }
    }
}

}  // namespace

std::string ListChildren(const CDiagObj& node) {
    std::vector<CEntry> entries;
    for (const CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() != TPARAM) {
            entries.push_back(EntryOf(*child, child->GetName()));
        }
    }
    return Lines(entries);
}

std::string ListTree(const CDiagObj& node) {
    std::vector<CEntry> entries;
    entries.push_back({PathOf(node), Printable(node.GetDescription())});
    AddTree(entries, node, "  ");
    return Lines(entries);
}
