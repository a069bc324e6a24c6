#include "host/shell/builtins/access_target.h"

#include "framework/diag_functions.h"
#include "host/diag_tree.h"
#include "host/shell/node_kind.h"
#include "host/usage_error.h"

namespace {

CDiagMenu& Checked(CDiagObj& node) {
    if (!CAccessTarget::Is(node)) {
        throw CUsageError(PathOf(node) + " is " + DescribeType(node) +
                          "; peek and poke take values and arrays");
    }
    return dynamic_cast<CDiagMenu&>(node);
}

}  // namespace

CAccessTarget::CAccessTarget(CDiagObj& node) : m_node(Checked(node)) {
    COutMsg answer;
    node.Query(answer);
    CInMsg fields(answer);
    fields >> m_vt;
    if (IsArray()) {
        fields >> m_first >> m_last;
    }
    uint8_t read_only = 0;
    fields >> read_only;
    m_read_only = read_only != 0;
}

bool CAccessTarget::Is(const CDiagObj& node) {
    const ENodeType type = node.GetNodeType();
    return dynamic_cast<const CDiagMenu*>(&node) != nullptr &&
           (type == TVALUE || type == TARRAY_I || type == TARRAY_A);
}

std::string CAccessTarget::PositionText(uint64_t position) const {
    return toString(position, m_node.GetNodeType() == TARRAY_I ? 0 : VF_HEX);
}
