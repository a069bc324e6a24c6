#include "i2c/i2c_eeprom_memory.h"

#include "i2c/diag_i2c_eeprom_device.h"

namespace {

constexpr uint8_t ELEMENT_TYPE = VT_UINT8 | VF_HEX | VF_PAD;

}  // namespace

CI2cEepromMemory::CI2cEepromMemory(CDiagI2cEepromDevice* dev, uint32_t size, bool rd_only)
    : CDiagAddrArray<unsigned char>("memory", "EEPROM memory area", 0, size, rd_only, ELEMENT_TYPE),
      m_pDev(dev) {
    if (m_pDev == nullptr) {
        throw CDiagException("%s:%d Assert failed (%s)", __FILE__, __LINE__, "m_pDev != NULL");
    }
}

void CI2cEepromMemory::Set(uint64_t addr, const byte_t& value) {
    const auto offset = static_cast<uint16_t>(addr);
    if (!m_pDev->WriteMemory(offset, &value, 1)) {
        throw CDiagException("Failed to write memory at %04X", offset);
    }
}

unsigned char CI2cEepromMemory::Get(uint64_t addr) {
    const auto offset = static_cast<uint16_t>(addr);
    byte_t value = 0;
    if (!m_pDev->ReadMemory(offset, &value, 1)) {
        throw CDiagException("Failed to read memory at %04X", offset);
    }
    return value;
}
