// A simulated chip as the wire sees it: conditions and bytes. A chip whose
// contents cannot be read or stored throws CDiagException from Start or Stop.
#pragma once

#include <cstdint>

class ISimChip {
  public:
    virtual ~ISimChip() = default;

    // A start or repeated start followed by an address byte: every chip on the
    // wire sees it and tells whether it acknowledges. One that does not takes
    // no part until the next start.
    virtual bool Start(uint8_t addr, bool read) = 0;
    // A byte from the master; true acknowledges it.
    virtual bool WriteByte(uint8_t value) = 0;
    // The byte that the chip puts on the wire next.
    virtual uint8_t ReadByte() = 0;
    // A stop condition; every chip on the wire sees it.
    virtual void Stop() = 0;
};
