#include "boards/root_bus/eeprom_table.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "framework/diag_exception.h"

namespace {

constexpr unsigned int LAST_ADDR = 0x7F;

void RefuseWhatCannotBe(const eeprom_geometry_t& part) {
    if (part.addr > LAST_ADDR) {
        throw CDiagException("an EEPROM cannot begin at slave address 0x%02x: 7 bits at most",
                             part.addr);
    }
    if (!std::has_single_bit(part.addresses)) {
        throw CDiagException("the EEPROM at 0x%02x cannot answer %u addresses: not a power of two",
                             part.addr, part.addresses);
    }
    if (part.addr % part.addresses != 0) {
        throw CDiagException("an EEPROM of %u addresses cannot begin at 0x%02x", part.addresses,
                             part.addr);
    }
    if (part.addr_bytes != 1 && part.addr_bytes != 2) {
        throw CDiagException("the EEPROM at 0x%02x cannot take %u memory address bytes: 1 or 2",
                             part.addr, part.addr_bytes);
    }
    // A page never lies behind two slave addresses.
    const uint32_t largest = 1U << part.AddrBits();
    if (!std::has_single_bit(part.page) || part.page > largest) {
        throw CDiagException(
            "the EEPROM at 0x%02x cannot have pages of %u bytes: a power of two up to %u",
            part.addr, part.page, largest);
    }
}

}  // namespace

CEepromTable::CEepromTable() {
    std::iota(m_cycles.begin(), m_cycles.end(), uint8_t{0});
}

void CEepromTable::Declare(const eeprom_geometry_t& part) {
    RefuseWhatCannotBe(part);
    CParts& parts = PartsOf(part.addr_bytes);
    // Slave address ranges that overlap lie one inside the other.
    eeprom_geometry_t merged = part;
    for (uint32_t addr = part.addr; addr <= part.LastAddr(); ++addr) {
        const eeprom_geometry_t& other = parts[addr];
        if (other.page == 0) {
            continue;
        }
        if (other.addresses > merged.addresses) {
            merged.addr = other.addr;
            merged.addresses = other.addresses;
        }
        merged.page = std::min(merged.page, other.page);
    }
    for (uint32_t addr = merged.addr; addr <= merged.LastAddr(); ++addr) {
        parts[addr] = merged;
        m_cycles[addr] = std::min(m_cycles[addr], merged.addr);
    }
}

const eeprom_geometry_t* CEepromTable::PartOf(const CI2cXfrReq& req) const {
    // No EEPROM checks packets: such a record is meant for another chip.
    const bool checked = req.dir != 0 ? req.rpec_en != 0 : req.wpec_en != 0;
    if (checked || req.cmd_sel == 0 || req.cmd_sel > m_parts.size()) {
        return nullptr;
    }
    const eeprom_geometry_t& part = m_parts[req.cmd_sel - 1U][req.saddr];
    return part.page != 0 ? &part : nullptr;
}
