// A piece of wire that devices of the description hang on: a root bus, or one
// channel of a multiplexer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "boards/sim/sim_clock.h"
#include "boards/sim/sim_segment.h"
#include "framework/diag_menu.h"

class CI2cWire {
  public:
    // `folder` is where the wire's memories keep their contents: its place in
    // the topology, as in "i2c-0/0x70/ch2".
    CI2cWire(CDiagMenu& menu, CSimSegment& segment, const CSimClock& clock,
             std::filesystem::path folder)
        : m_menu(menu), m_segment(segment), m_clock(clock), m_folder(std::move(folder)) {}

    // The tree node under which the devices of this wire stand.
    CDiagMenu& Menu() const { return m_menu; }
    CSimSegment& Segment() const { return m_segment; }
    const CSimClock& Clock() const { return m_clock; }
    const std::filesystem::path& Folder() const { return m_folder; }

    // Takes an address for the node at `path`; throws CDiagException with both
    // nodes when another one has it.
    void Claim(uint8_t addr, const std::string& path);

  private:
    CDiagMenu& m_menu;
    CSimSegment& m_segment;
    const CSimClock& m_clock;
    const std::filesystem::path m_folder;
    std::map<uint8_t, std::string> m_claims;
};
