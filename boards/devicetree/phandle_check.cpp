#include "boards/devicetree/phandle_check.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "boards/devicetree/device_tree.h"
#include "boards/devicetree/property_reader.h"
#include "framework/diag_exception.h"

namespace {

constexpr std::array<std::string_view, 3> FOLLOWED = {"i2c-parent", "i2c-bus", "mdio-parent-bus"};

// How many nodes of a circle a message names; the rest is "...".
constexpr ptrdiff_t MAX_NAMED = 16;

// A step up; `property` is empty when it leads to the node that holds this one.
struct CStep {
    const CDeviceTreeNode* target;
    std::string_view property;
};

class CCycleCheck {
  public:
    explicit CCycleCheck(const CDeviceTree& tree) : m_tree(tree) {}

    void CheckBelow(const CDeviceTreeNode& node) {
        Walk(node);
        for (const auto& child : node.Children()) {
            CheckBelow(*child);
        }
    }

  private:
    // A node on the way, with the steps up from it that have not been tried.
    struct CStop {
        const CDeviceTreeNode* node;
        std::vector<CStep> steps;
        std::string_view taken;  // the property of the step being tried
    };

    // Depth first and without recursion: a chain may be as long as there are nodes.
    void Walk(const CDeviceTreeNode& start) {
        std::vector<CStop> way;
        Enter(way, start);
        while (!way.empty()) {
            CStop& stop = way.back();
            if (stop.steps.empty()) {
                m_done[stop.node] = true;
                way.pop_back();
                continue;
            }
            const CStep step = stop.steps.back();
            stop.steps.pop_back();
            stop.taken = step.property;
            const auto seen = m_done.find(step.target);
            if (seen == m_done.end()) {
                Enter(way, *step.target);
            } else if (!seen->second) {
                Refuse(way, *step.target);
            }
        }
    }

    void Enter(std::vector<CStop>& way, const CDeviceTreeNode& node) {
        if (m_done.emplace(&node, false).second) {
            way.push_back({&node, StepsUp(node), {}});
        }
    }

    std::vector<CStep> StepsUp(const CDeviceTreeNode& node) const {
        std::vector<CStep> steps;
        for (const std::string_view property : FOLLOWED) {
            for (const CDeviceTreeNode* target : Targets(node, property)) {
                steps.push_back({target, property});
            }
        }
        if (steps.empty() && node.Parent() != nullptr) {
            steps.push_back({node.Parent(), {}});
        }
        return steps;
    }

    // What is no handle, or the handle of no node, leads nowhere; whoever needs
    // that property reports it.
    std::vector<const CDeviceTreeNode*> Targets(const CDeviceTreeNode& node,
                                                std::string_view property) const {
        std::vector<const CDeviceTreeNode*> targets;
        const CDeviceTreeProperty* found = node.Find(property);
        if (found == nullptr || found->value.empty() || found->value.size() % CELL_SIZE != 0) {
            return targets;
        }
        for (const uint32_t phandle : ReadCells(node, property)) {
            if (const CDeviceTreeNode* target = m_tree.NodeOf(phandle)) {
                targets.push_back(target);
            }
        }
        return targets;
    }

    [[noreturn]] static void Refuse(const std::vector<CStop>& way, const CDeviceTreeNode& again) {
        const auto first = std::find_if(
            way.begin(), way.end(), [&again](const CStop& stop) { return stop.node == &again; });
        std::string circle;
        std::string_view property;
        for (auto stop = first; stop != way.end(); ++stop) {
            if (stop - first < MAX_NAMED) {
                circle += stop->node->Path() + " -> ";
            } else if (stop - first == MAX_NAMED) {
                circle += "... -> ";
            }
            property = stop->taken.empty() ? property : stop->taken;
        }
        throw CDiagException("property \"%s\" leads round in a circle: %s%s",
                             std::string(property).c_str(), circle.c_str(), again.Path().c_str());
    }

    const CDeviceTree& m_tree;
    // Nodes on the present way (false) and nodes known to lead to the root (true).
    std::unordered_map<const CDeviceTreeNode*, bool> m_done;
};

}  // namespace

void CheckPhandleCycles(const CDeviceTree& tree) {
    CCycleCheck(tree).CheckBelow(tree.Root());
}
