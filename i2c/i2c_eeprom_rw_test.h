// The EEPROM test "rw-test": saves an address range, writes pseudo-random
// bytes, verifies them and puts the saved bytes back, also after a failure or a
// stop.
#pragma once

#include <cstdint>
#include <vector>

#include "framework/diag_test.h"

class CDiagI2cEepromDevice;

class CDiagI2cEepromReadWriteTest : public CDiagTest {
  public:
    CDiagI2cEepromReadWriteTest(uint32_t mem_size, uint8_t xfer_unit);

    bool TestSetup(CInMsg& in) override;
    ETestStatus TestRun(COutMsg& out) override;

  protected:
    uint32_t m_mem_size;
    uint8_t m_xfer_unit;
    uint32_t m_sa = 0;    // first address
    uint32_t m_ea = 127;  // last address

  private:
    enum EOnStop : uint8_t { END_ON_STOP, GO_ON };

    template <class Work>
    ETestStatus ForEachChunk(EOnStop on_stop, Work work);

    ETestStatus Save(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& saved);
    ETestStatus Write(CDiagI2cEepromDevice& eeprom);
    ETestStatus Verify(CDiagI2cEepromDevice& eeprom);
    // False when any chunk could not be written back.
    bool Restore(CDiagI2cEepromDevice& eeprom, const std::vector<byte_t>& saved);
};
