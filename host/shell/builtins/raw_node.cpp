#include "host/shell/builtins/raw_node.h"

#include <algorithm>

#include "host/diag_tree.h"
#include "host/shell/node_kind.h"
#include "host/shell/shell.h"
#include "host/usage_error.h"

namespace {

// Between two pieces Ctrl-C is seen.
constexpr size_t PIECE = 256;

bool IsArray(const CDiagObj& node) {
    return node.GetNodeType() == TARRAY_I || node.GetNodeType() == TARRAY_A;
}

}  // namespace

CRawNode CRawNode::At(const CShell& shell, const std::string& path) {
    CDiagObj& node = shell.NodeAt(path);
    CDiagObj* holder = IsArray(node) ? node.GetParent() : &node;
    auto* device = dynamic_cast<CDiagDevice*>(holder);
    auto* memory = dynamic_cast<IRawMemory*>(holder);
    if (device == nullptr || memory == nullptr) {
        throw CUsageError(PathOf(node) + " is " + DescribeType(node) +
                          " without raw contents; export and import take memory devices");
    }
    return {*device, *memory};
}

std::string CRawNode::Path() const {
    return PathOf(m_device);
}

bool CRawNode::Read(uint32_t offset, std::span<byte_t> to,
                    const std::function<bool(size_t)>& go_on) const {
    for (size_t done = 0; done < to.size(); done += PIECE) {
        if (!go_on(done)) {
            return false;
        }
        m_memory.ReadRaw(offset + static_cast<uint32_t>(done),
                         to.subspan(done, std::min(to.size() - done, PIECE)));
    }
    return true;
}
