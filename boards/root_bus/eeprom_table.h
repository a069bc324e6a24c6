// The EEPROMs of a bus, found by slave address in one step. Behind multiplexers
// several may share an address: the bus sees only that.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "boards/root_bus/eeprom_geometry.h"
#include "i2c/i2c_xfr_req.h"

class CEepromTable {
  public:
    CEepromTable();

    // Parts that share slave addresses and are sent as many address bytes count
    // as one that has the slave addresses of all and the smallest page: each of
    // their memory addresses goes where it would go without the others. Throws
    // CDiagException, and leaves the table as it was, for a part that cannot be.
    void Declare(const eeprom_geometry_t& part);

    // The part that a record to a 7-bit address is meant for, or null.
    const eeprom_geometry_t* PartOf(const CI2cXfrReq& req) const;
    // A number that all slave addresses of a part have in common: while it
    // stores a page, it answers none of them.
    uint8_t CycleOf(uint8_t addr) const { return m_cycles[addr]; }

  private:
    static constexpr size_t ADDRESSES = 128;
    // By slave address; no part where the page is 0.
    using CParts = std::array<eeprom_geometry_t, ADDRESSES>;

    CParts& PartsOf(uint8_t addr_bytes) { return m_parts[addr_bytes - 1U]; }

    std::array<CParts, 2> m_parts{};  // of one and of two address bytes
    std::array<uint8_t, ADDRESSES> m_cycles{};
};
