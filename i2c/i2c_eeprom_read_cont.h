// The EEPROM test "read-cont": reads the memory over and over, 256 bytes a
// step, for a given time.
#pragma once

#include <array>
#include <cstdint>

#include "framework/timed_test.h"

class CDiagI2cEepromDevice;

class CDiagI2cEepromReadCont : public CTimedTest {
  public:
    explicit CDiagI2cEepromReadCont(uint32_t mem_size);

    bool TestSetupEx(CInMsg& in) override;
    bool TestExecute() override;

  protected:
    CDiagI2cEepromDevice* m_pDev = nullptr;
    uint16_t m_offset = 0;  // of the next read
    std::array<byte_t, 256> m_buf{};
    uint32_t m_mem_size;
};
