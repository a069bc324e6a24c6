#include "host/shell/builtins/listing.h"

#include <algorithm>
#include <cctype>

#include "framework/diag_obj.h"
#include "host/diag_tree.h"
#include "host/printable.h"
#include "host/shell/builtins/listing_options.h"
#include "host/shell/builtins/node_details.h"
#include "host/shell/node_kind.h"
#include "host/shell/shell.h"
#include "host/shell/table.h"

namespace {

// A line for each node that is added.
class CLister {
  public:
    explicit CLister(const CListingOptions& options) : m_options(options) {}

    void Add(CDiagObj& node, const std::string& name) {
        const CNodeDetails details = m_options.details ? DetailsOf(node) : CNodeDetails{};
        m_table.Add({details.type, name, details.value, Printable(node.GetDescription())});
    }

    // What is below a node, each level further to the right.
    void AddBelow(const CDiagObj& node, uint64_t level) {
        if (level >= m_options.levels) {
            return;
        }
        for (CDiagObj* child : node.GetChildren()) {
            const ENodeType type = child->GetNodeType();
            if (type != TPARAM && (type != TFUNC || m_options.commands)) {
                Add(*child, std::string(2 * (level + 1), ' ') + MarkedName(*child));
                AddBelow(*child, level + 1);
            }
        }
    }

    static std::string MarkedName(const CDiagObj& node) {
        return Printable(node.GetName()) + TypeMark(node);
    }

    void Print(CShell& shell) const { shell.Print(m_table.Text(shell.Terminal().Columns())); }

  private:
    const CListingOptions& m_options;
    CTable m_table;
};

bool HasText(const std::string& text, const std::string& wanted) {
    const auto equal = [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b);
    };
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), equal) != text.end();
}

void AddFound(CTable& table, const CDiagObj& node, const std::string& wanted) {
    for (const CDiagObj* child : node.GetChildren()) {
        if (child->GetNodeType() == TPARAM) {
            continue;
        }
        if (HasText(child->GetName(), wanted) || HasText(child->GetDescription(), wanted)) {
            table.Add(
                {Printable(PathOf(*child)) + TypeMark(*child), Printable(child->GetDescription())});
        }
        AddFound(table, *child, wanted);
    }
}

}  // namespace

EExitStatus List(CShell& shell, const std::vector<std::string>& arguments) {
    const CListingOptions options = CListingOptions::Of("ls", arguments, "l");
    CLister lister(options);
    for (CDiagObj* child : shell.NodeAt(options.node).GetChildren()) {
        if (child->GetNodeType() != TPARAM) {
            lister.Add(*child, CLister::MarkedName(*child));
        }
    }
    lister.Print(shell);
    return EXIT_PASSED;
}

EExitStatus Tree(CShell& shell, const std::vector<std::string>& arguments) {
    const CListingOptions options = CListingOptions::Of("tree", arguments, "ald");
    CDiagObj& top = shell.NodeAt(options.node);
    CLister lister(options);
    lister.Add(top, PathOf(top));
    lister.AddBelow(top, 0);
    lister.Print(shell);
    return EXIT_PASSED;
}

EExitStatus Find(CShell& shell, const std::vector<std::string>& arguments) {
    const CDiagObj& top = shell.NodeAt(arguments.size() > 1 ? arguments[1] : "/");
    CTable table;
    AddFound(table, top, arguments[0]);
    const std::string found = table.Text(shell.Terminal().Columns());
    shell.Print(!found.empty() ? found
                               : "nothing below " + PathOf(top) + " has \"" +
                                     Printable(arguments[0]) + "\" in its name or description\n");
    return EXIT_PASSED;
}
