#include "host/shell/node_path.h"

#include <algorithm>

#include "framework/diag_obj.h"
#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/near_names.h"
#include "host/shell/node_kind.h"
#include "host/usage_error.h"

namespace {

// Names that an error lists at the most.
constexpr size_t MOST_CANDIDATES = 8;

// Whether a path can name it, and the operator may want it to.
bool IsNamedInPaths(const CDiagObj& node) {
    const std::string_view name = node.GetName();
    return node.GetNodeType() != TPARAM && !name.empty() &&
           name.find('/') == std::string_view::npos;
}

std::vector<std::string> ChildNames(const CDiagObj& node) {
    std::vector<std::string> names;
    for (const CDiagObj* child : node.GetChildren()) {
        if (IsNamedInPaths(*child)) {
            names.emplace_back(child->GetName());
        }
    }
    return names;
}

std::vector<CDiagObj*> ChildrenThatBeginWith(const CDiagObj& node, const std::string& beginning) {
    std::vector<CDiagObj*> children;
    for (CDiagObj* child : node.GetChildren()) {
        if (IsNamedInPaths(*child) && std::string_view(child->GetName()).starts_with(beginning)) {
            children.push_back(child);
        }
    }
    return children;
}

// "pca9547-0, pca9548-0, ... and 3 more"
std::string ListOf(const std::vector<CDiagObj*>& nodes) {
    std::string text;
    for (size_t i = 0; i < std::min(nodes.size(), MOST_CANDIDATES); ++i) {
        text += (i == 0 ? "" : ", ") + Printable(nodes[i]->GetName());
    }
    if (nodes.size() > MOST_CANDIDATES) {
        text += ", ... and " + std::to_string(nodes.size() - MOST_CANDIDATES) + " more";
    }
    return text;
}

// Goes along a path name by name.
class CPathWalk {
  public:
    CPathWalk(CDiagObj& from, const std::string& path, const std::vector<std::string>& words)
        : m_from(from),
          m_path(path),
          m_words(words),
          m_node(path.starts_with('/') ? &RootOf(from) : &from) {}

    CDiagObj& End() {
        for (size_t begin = 0; begin < m_path.size();) {
            const size_t end = std::min(m_path.find('/', begin), m_path.size());
            Step(m_path.substr(begin, end - begin));
            begin = end + 1;
        }
        return *m_node;
    }

  private:
    void Step(const std::string& name) {
        if (name.empty() || name == ".") {
            return;
        }
        if (name == "..") {
            // As in a file system, the top is its own parent.
            m_node = m_node->GetParent() != nullptr ? m_node->GetParent() : m_node;
            return;
        }
        CDiagObj* child = m_node->FindChild(name);
        if (child == nullptr) {
            const std::vector<CDiagObj*> candidates = ChildrenThatBeginWith(*m_node, name);
            if (candidates.size() != 1) {
                Refuse(name, candidates);
            }
            child = candidates.front();
        }
        m_node = child;
    }

    [[noreturn]] void Refuse(const std::string& name,
                             const std::vector<CDiagObj*>& candidates) const {
        const std::string where = Quoted(name) + " in " + PathOf(*m_node);
        if (!candidates.empty()) {
            throw CUsageError(Printable(m_path) + ": " + where +
                              " may be any of: " + ListOf(candidates));
        }
        std::vector<std::string> names = ChildNames(*m_node);
        if (names.empty()) {
            throw CUsageError(Printable(m_path) + ": " + PathOf(*m_node) + " is " +
                              DescribeType(*m_node) + "; there is nothing below it");
        }
        if (name == m_path) {
            names.insert(names.begin(), m_words.begin(), m_words.end());
        }
        std::string hint = DidYouMean(name, names);
        if (hint.empty()) {
            hint = m_node == &m_from ? "try ls or help" : "try ls " + PathOf(*m_node);
        }
        throw CUsageError(Printable(m_path) + ": there is no " + where + "; " + hint);
    }

    static std::string Quoted(const std::string& name) { return "\"" + Printable(name) + "\""; }

    CDiagObj& m_from;
    const std::string& m_path;
    const std::vector<std::string>& m_words;
    CDiagObj* m_node;
};

}  // namespace

CDiagObj& FindNode(CDiagObj& from, const std::string& path, const std::vector<std::string>& words) {
    if (path.empty()) {
        throw CUsageError("an empty word names no node");
    }
    return CPathWalk(from, path, words).End();
}
