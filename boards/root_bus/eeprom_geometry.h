// How an EEPROM is addressed, and where its pages end.
#pragma once

#include <cstdint>

struct eeprom_geometry_t {
    uint8_t addr;        // first slave address
    uint8_t addresses;   // slave addresses, a power of two; their low bits are the memory
                         // address bits above the address bytes
    uint8_t addr_bytes;  // memory address bytes, 1 or 2; on the wire the high one goes first
    uint16_t page;       // bytes, a power of two; a longer write wraps inside its page

    // Memory address bits in the address bytes.
    uint32_t AddrBits() const { return addr_bytes * 8U; }
    // Memory addresses behind all slave addresses together.
    uint32_t Reach() const { return uint32_t{addresses} << AddrBits(); }
    uint32_t LastAddr() const { return uint32_t{addr} + addresses - 1; }

    bool operator==(const eeprom_geometry_t&) const = default;
};
