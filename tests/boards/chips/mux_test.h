// A multiplexer chip of each kind as the driver and as the simulation, hung
// below one simulated bus.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "boards/chips/mux_chip.h"
#include "boards/sim/sim_at24.h"
#include "tests/boards/chips/taped_sim_bus.h"
#include "tests/support/log_capture.h"
#include "tests/support/request.h"
#include "tests/support/temp_folder.h"

// A multiplexer on both sides of the wire.
struct CMuxPair {
    CMuxChip& driver;
    CSimMux& chip;
};

class CMuxTest : public testing::Test {
  protected:
    // On the root bus.
    CMuxPair AddMux(const char* part, uint8_t addr) {
        return Add(m_bus, m_bus.Segment(), part, addr, -1);
    }
    // Below channel `ch` of another one.
    CMuxPair AddMux(const CMuxPair& above, uint8_t ch, const char* part, uint8_t addr) {
        return Add(*above.driver.getChannelMenu(ch), above.chip.Channel(ch), part, addr,
                   static_cast<int8_t>(ch));
    }
    // A memory of 256 bytes, all of that value.
    void AddMemory(CSimSegment& segment, uint8_t addr, uint8_t value) {
        const sim_at24_part_t* part = FindSimAt24Part("24c02");
        const auto file = m_folder / ("memory" + std::to_string(m_chips++));
        segment.Add(std::make_unique<CSimAt24>(
            *part, addr,
            std::make_unique<CSimMemory>(file, part->size, std::vector<uint8_t>(part->size, value)),
            m_bus.Clock()));
    }
    // The byte at memory address 0 behind `addr`, -1 when nobody answers.
    int ReadByte(uint8_t addr) {
        byte_t byte = 0;
        CI2cXfrReq req;
        req.saddr = addr;
        req.dir = 1;
        req.cmd_sel = 1;
        req.data = &byte;
        req.tsize = 1;
        return m_bus.I2cTrans(req) ? byte : -1;
    }
    template <class... Args>
    CAnswer Call(CDiagObj& node, const std::string& command, const Args&... args) {
        return Send(NodeAt(node, command), MSG_CALL, args...);
    }

    CTempFolder m_folder;
    CTapedSimBus m_bus{"i2c-0", "simulated bus", 100'000};

  private:
    CMuxPair Add(CDiagMenu& menu, CSimSegment& segment, const char* part, uint8_t addr,
                 int8_t upstream_ch) {
        auto* driver = new CMuxChip(*FindMuxPart(part), part, "multiplexer",
                                    static_cast<uint32_t>(m_chips++), addr, upstream_ch);
        menu.AddChild(driver, CDiagObj::NO_SORT);
        CSimMux& chip = segment.Add(std::make_unique<CSimMux>(*FindSimMuxPart(part), addr));
        m_bus.Watch(chip);
        return {*driver, chip};
    }

    int m_chips = 0;
};
