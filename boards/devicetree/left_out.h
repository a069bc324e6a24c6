// What of a description has no place in the tree, and why: nodes that are disabled, that
// nothing is known of, or that cannot be.
#pragma once

#include <string>
#include <vector>

#include "boards/devicetree/device_tree_node.h"
#include "boards/devicetree/sim_parts.h"
#include "framework/diag_exception.h"
#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"

class CLeftOut {
  public:
    // `why` as in "disabled".
    void Add(const CDeviceTreeNode& node, const std::string& compatible, const char* why);

    // Reports what `work` throws and goes on: one bad node leaves the others alone.
    template <class Work>
    void Step(Work work) {
        try {
            work();
        } catch (const CContentsFault&) {
            throw;
        } catch (const CDiagException& fault) {
            diag_pf_send_log(LW_WARN, "left out: %s\n", fault.what());
            m_texts.emplace_back(fault.what());
        }
    }

    // In the order of the description.
    const std::vector<std::string>& Texts() const { return m_texts; }

  private:
    std::vector<std::string> m_texts;
};
