// An EEPROM of the board as plain bytes, for "export" and "import".
#pragma once

#include <cstdint>
#include <span>

#include "framework/raw_memory.h"
#include "i2c/diag_i2c_eeprom_device.h"

class CEepromRaw : public IRawMemory {
  public:
    uint32_t GetRawSize() const override { return m_eeprom.GetMemSize(); }
    uint32_t GetRawPage() const override { return m_page; }
    bool IsRawReadOnly() const override { return m_read_only; }
    void ReadRaw(uint32_t offset, std::span<byte_t> to) override;
    void WriteRaw(uint32_t offset, std::span<const byte_t> from) override;

  protected:
    // `page`: bytes of one transfer.
    CEepromRaw(CDiagI2cEepromDevice& eeprom, uint32_t page, bool read_only)
        : m_eeprom(eeprom), m_page(page), m_read_only(read_only) {}

  private:
    template <class Byte, class Move>
    void MoveRaw(const char* what, uint32_t offset, std::span<Byte> bytes, Move move);

    CDiagI2cEepromDevice& m_eeprom;
    const uint32_t m_page;
    const bool m_read_only;
};
