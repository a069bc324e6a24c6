#include "framework/diag_obj.h"

#include <algorithm>
#include <atomic>
#include <cstring>

#include "framework/diag_exception.h"

namespace {

// 0 stands for the shell itself.
std::atomic<unsigned int> g_next_id{1};

bool IsSelfOrAncestor(const CDiagObj* node, const CDiagObj* of) {
    while (of != nullptr && of != node) {
        of = of->GetParent();
    }
    return of == node;
}

}  // namespace

CDiagObj::CDiagObj(ENodeType type, const std::string& name, const std::string& description)
    : m_id(g_next_id++), m_type(type), m_name(name), m_description(description) {}

CDiagObj::~CDiagObj() {
    for (CDiagObj* child : m_children) {
        delete child;
    }
}

void CDiagObj::Reset() {
    for (CDiagObj* child : m_children) {
        child->Reset();
    }
}

void CDiagObj::Query(COutMsg& out) {
    out << static_cast<uint8_t>(m_type) << m_id << m_name << m_description;
}

void CDiagObj::AddChild(CDiagObj* child, ESortOrder order) {
    DIAG_ASSERT(child != nullptr);
    DIAG_ASSERT(child->m_parent == nullptr);
    DIAG_ASSERT(!IsSelfOrAncestor(child, this));
    auto place = m_children.end();
    if (order == SORT_BY_NAME) {
        place = std::find_if(m_children.begin(), m_children.end(), [child](const CDiagObj* other) {
            return other->m_name > child->m_name;
        });
    } else if (order == SORT_BY_ID) {
        place = std::find_if(m_children.begin(), m_children.end(),
                             [child](const CDiagObj* other) { return other->m_id > child->m_id; });
    }
    m_children.insert(place, child);
    child->m_parent = this;
}

CDiagObj* CDiagObj::FindChild(const std::string& name) const {
    const auto found =
        std::find_if(m_children.begin(), m_children.end(),
                     [&name](const CDiagObj* child) { return child->m_name == name; });
    return found == m_children.end() ? nullptr : *found;
}

std::unique_ptr<CDiagObj> CDiagObj::RemoveChild(unsigned int id) {
    const auto found = std::find_if(m_children.begin(), m_children.end(),
                                    [id](const CDiagObj* child) { return child->m_id == id; });
    if (found == m_children.end()) {
        return nullptr;
    }
    std::unique_ptr<CDiagObj> child(*found);
    m_children.erase(found);
    child->m_parent = nullptr;
    return child;
}
