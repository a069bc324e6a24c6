// What the tests of the simulated bus share: a bus, a folder for the memories, and short forms of
// transfers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "boards/sim/sim_at24.h"
#include "boards/sim/sim_bus.h"
#include "boards/sim/sim_mux.h"
#include "tests/support/temp_folder.h"

using CData = std::vector<uint8_t>;

// 0, 1, 2, ... to `size` bytes, so that every byte of a page tells its place.
inline CData Counting(size_t size) {
    CData data(size);
    std::iota(data.begin(), data.end(), uint8_t{0});
    return data;
}

class CSimTest : public testing::Test {
  protected:
    static constexpr uint32_t BUS_HZ = 100'000;

    CSimAt24& AddAt24(CSimSegment& segment, const char* part_name, uint8_t addr,
                      const CData& image = {}) {
        const sim_at24_part_t* part = FindSimAt24Part(part_name);
        const std::string file = "chip" + std::to_string(m_chips++);
        return segment.Add(std::make_unique<CSimAt24>(
            *part, addr, std::make_unique<CSimMemory>(m_folder / file, part->size, image),
            m_bus.Clock()));
    }
    CSimAt24& AddAt24(const char* part_name, uint8_t addr, const CData& image = {}) {
        return AddAt24(m_bus.Segment(), part_name, addr, image);
    }
    CSimMux& AddMux(CSimSegment& segment, const char* part_name, uint8_t addr) {
        return segment.Add(std::make_unique<CSimMux>(*FindSimMuxPart(part_name), addr));
    }
    CSimMux& AddMux(const char* part_name, uint8_t addr) {
        return AddMux(m_bus.Segment(), part_name, addr);
    }

    // Each leaves the error text in m_errmsg.
    bool Write(uint8_t addr, CData bytes) { return Trans(addr, 0, {}, bytes); }
    bool Write(uint8_t addr, const CData& command, CData bytes) {
        return Trans(addr, 0, command, bytes);
    }
    // The bytes read; empty when the transfer failed.
    CData Read(uint8_t addr, size_t length) { return Read(addr, {}, length); }
    CData Read(uint8_t addr, const CData& command, size_t length) {
        CData bytes(length);
        return Trans(addr, 1, command, bytes) ? bytes : CData{};
    }
    bool Answers(uint8_t addr) {
        CData none;
        return Trans(addr, 0, {}, none);
    }

    CTempFolder m_folder;
    CSimBus m_bus{"i2c-0", "simulated bus", BUS_HZ};
    std::string m_errmsg;

  private:
    bool Trans(uint8_t addr, uint8_t dir, const CData& command, CData& bytes) {
        CI2cXfrReq req;
        req.saddr = addr;
        req.dir = dir;
        req.cmd_sel = static_cast<byte_t>(command.size());
        for (size_t i = 0; i < command.size(); ++i) {
            req.cmd = static_cast<uint16_t>(req.cmd | (command[i] << (8 * i)));
        }
        req.data = bytes.data();
        req.tsize = static_cast<byte_t>(bytes.size());
        const bool ok = m_bus.I2cTrans(req);
        m_errmsg = req.errmsg;
        return ok;
    }

    int m_chips = 0;
};
