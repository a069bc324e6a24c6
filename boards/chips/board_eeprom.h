// An EEPROM of the board. It is the library's EEPROM at its place, and makes up
// for what an operator must not run into: peeks and pokes open the path,
// "rw-test" tells which bytes it could not put back, a "read" that would move
// nothing is refused, and one that fails closes the path.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "boards/chips/board_place.h"
#include "framework/raw_memory.h"
#include "i2c/diag_i2c_eeprom_device.h"

class CBoardEeprom : public CDiagI2cEepromDevice, public IRawMemory {
  public:
    // Memory addresses have 16 bits: `attr` may describe 64 KiB at most.
    CBoardEeprom(const std::string& name, const std::string& description,
                 const board_place_t& place, i2c_eeprom_attr_t attr, bool read_only);

    uint32_t GetRawSize() const override { return m_attr.mem_size; }
    uint32_t GetRawPage() const override { return m_xfer_size; }
    bool IsRawReadOnly() const override { return m_read_only; }
    void ReadRaw(uint32_t offset, std::span<byte_t> to) override;
    void WriteRaw(uint32_t offset, std::span<const byte_t> from) override;

  private:
    template <class Byte, class Move>
    void MoveRaw(const char* what, uint32_t offset, std::span<Byte> bytes, Move move);

    const bool m_read_only;
};
