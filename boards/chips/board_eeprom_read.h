// The command "read" of a board's EEPROM. A length that does not fit 16 bits
// would read nothing and pass, so it is refused; and the path is closed also
// when there is no memory for the dump.
#pragma once

#include <cstdint>
#include <string>

#include "i2c/i2c_eeprom_commands.h"

class CBoardEepromRead : public CDiagI2cEepromReadCmd {
  public:
    // What one read moves, in bytes.
    static constexpr uint32_t LONGEST = 0xFFFF;

    CBoardEepromRead(const std::string& name, const std::string& description, uint32_t mem_size)
        : CDiagI2cEepromReadCmd(name, description), m_mem_size(mem_size) {}

    void Invoke(CInMsg& in, COutMsg& out) override;

  private:
    uint32_t LengthOf(CInMsg in) const;

    const uint32_t m_mem_size;
};
