// What the tests of EEPROMs on a root bus share: a recording bus and records
// that move bytes which tell their place.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "tests/boards/root_bus/tape_bus.h"

class CRootBusEepromTest : public testing::Test {
  protected:
    using Bytes = std::vector<uint8_t>;

    static constexpr eeprom_geometry_t AT24C02{0x50, 1, 1, 8};
    static constexpr eeprom_geometry_t AT24C08{0x54, 4, 1, 16};
    static constexpr eeprom_geometry_t AT24C64{0x50, 1, 2, 32};
    static constexpr eeprom_geometry_t AT24C1024{0x50, 2, 2, 256};

    CRootBusEepromTest() { std::iota(m_data.begin(), m_data.end(), uint8_t{1}); }

    CI2cXfrReq Request(uint8_t addr, uint8_t cmd_sel, uint16_t cmd, uint8_t size) {
        CI2cXfrReq req;
        req.saddr = addr;
        req.cmd_sel = cmd_sel;
        req.cmd = cmd;
        req.data = m_data.data();
        req.tsize = size;
        return req;
    }
    bool Trans(CI2cXfrReq req) {
        const bool ok = m_bus.I2cTrans(req);
        m_errmsg = req.errmsg;
        return ok;
    }
    // One address byte goes as it is, of two the high one goes first.
    bool Write1(uint8_t addr, uint16_t memory, uint8_t size) {
        return Trans(Request(addr, 1, memory, size));
    }
    bool Write2(uint8_t addr, uint16_t memory, uint8_t size) {
        return Trans(Request(addr, 2, HighFirst(memory), size));
    }
    static uint16_t HighFirst(uint16_t memory) {
        return static_cast<uint16_t>((memory << 8) | (memory >> 8));
    }

    // A write on the wire: the address bytes, then bytes `first` to before
    // `end` of the record.
    CTape Piece(uint8_t addr, Bytes bytes, size_t first, size_t end) const {
        bytes.insert(bytes.end(), m_data.begin() + static_cast<std::ptrdiff_t>(first),
                     m_data.begin() + static_cast<std::ptrdiff_t>(end));
        return {WriteOf(addr, std::move(bytes))};
    }

    CTapeBus m_bus;
    std::array<uint8_t, 255> m_data{};
    std::string m_errmsg;
};

using CTapes = std::vector<CTape>;
