#include "host/shell/builtins/scan_wires.h"

#include <map>

#include "host/diag_tree.h"

namespace {

class CFinder {
  public:
    explicit CFinder(const CDiagObj& top) : m_top(top) {}

    void Visit(CDiagObj& node, size_t above, bool is_shown) {
        is_shown = is_shown || &node == &m_top;
        Enter(node);
        if (const auto entered = m_entered.find(&node); entered != m_entered.end()) {
            CScanWire wire = entered->second;
            wire.above = above;
            wire.is_shown = is_shown;
            above = m_wires.size();
            m_wires.push_back(wire);
        }
        for (CDiagObj* child : node.GetChildren()) {
            Visit(*child, above, is_shown);
        }
    }

    std::vector<CScanWire> Take() {
        for (size_t at = 0; at < m_wires.size(); ++at) {
            if (m_wires[at].is_shown) {
                Need(at);
            }
        }
        return std::move(m_wires);
    }

  private:
    void Enter(CDiagObj& node) {
        auto* scan = dynamic_cast<IBusScan*>(&node);
        const auto* device = dynamic_cast<const CDiagDevice*>(&node);
        if (scan == nullptr || device == nullptr) {
            return;
        }
        size_t number = 0;
        for (const CDiagMenu* wire : scan->GetWires()) {
            m_entered[wire] = {scan, device, number++, wire, CScanWire::NONE, false, false};
        }
    }

    void Need(size_t at) {
        for (; at != CScanWire::NONE; at = m_wires[at].above) {
            m_wires[at].is_needed = true;
        }
    }

    const CDiagObj& m_top;
    std::map<const CDiagObj*, CScanWire> m_entered;  // wires of the devices that were met
    std::vector<CScanWire> m_wires;
};

}  // namespace

std::vector<CScanWire> FindScanWires(CDiagObj& top) {
    CFinder finder(top);
    finder.Visit(RootOf(top), CScanWire::NONE, false);
    return finder.Take();
}
