// The adapters of a board: its buses, simulated, with the numbers that Linux would give
// them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "boards/devicetree/aliases.h"
#include "boards/devicetree/device_tree.h"
#include "boards/i2c_sim/adapter.h"
#include "framework/diag_menu.h"

// A multiplexer that the kernel drives.
struct driven_mux_t {
    const CAdapter* adapter;  // what it hangs on
    uint8_t addr;
    std::string chip;
    std::vector<unsigned int> channels;  // their adapters' numbers
};

class CBoardAdapters {
  public:
    struct CEntry {
        std::unique_ptr<CAdapter> adapter;
        std::string node;  // its path in the device tree; empty when it has none
    };

    // Memories live in files below `state`, and begin with the images that stand beside the
    // blob. With `kernel_mux` the channels of multiplexers are adapters of their own. Throws
    // CDiagException, as mounting a board does. The tree is needed no longer afterwards.
    CBoardAdapters(const CDeviceTree& tree, const std::filesystem::path& blob,
                   const std::filesystem::path& state, const adapter_traits_t& traits,
                   bool kernel_mux);
    ~CBoardAdapters();
    CBoardAdapters(const CBoardAdapters&) = delete;
    CBoardAdapters& operator=(const CBoardAdapters&) = delete;

    const std::vector<CEntry>& Entries() const { return m_entries; }
    const std::vector<driven_mux_t>& Muxes() const { return m_muxes; }

  private:
    // `node` may be null.
    CAdapter& Add(std::unique_ptr<CAdapter> adapter, const CDeviceTreeNode* node);
    void AddMuxes(const CDeviceTreeNode& bus, CAdapter& adapter);
    void AddMux(const CDeviceTreeNode& node, CAdapter& adapter);
    unsigned int NumberOf(const CDeviceTreeNode* node);

    const CAliases m_aliases;
    unsigned int m_next;                 // number without an alias
    std::unique_ptr<CDiagMenu> m_board;  // has the buses
    std::vector<CEntry> m_entries;
    std::vector<driven_mux_t> m_muxes;
};
