// The test "rw-test" of a board's EEPROM. The library's test puts back what it
// can and says no more of it; this one keeps what the range held. After a run
// that did not pass it looks again, puts back once more what is not as it was,
// and names every byte that still is not, with what it held. A read-only EEPROM
// is not tested.
#pragma once

#include <cstdint>
#include <vector>

#include "i2c/diag_i2c_eeprom_device.h"
#include "i2c/i2c_eeprom_rw_test.h"

class CBoardEepromRwTest : public CDiagI2cEepromReadWriteTest {
  public:
    // `xfer_size` is what the EEPROM moves in one transfer.
    CBoardEepromRwTest(const i2c_eeprom_attr_t& attr, uint16_t xfer_size, bool read_only)
        : CDiagI2cEepromReadWriteTest(attr.mem_size, attr.xfer_unit),
          m_xfer_size(xfer_size),
          m_read_only(read_only) {}

    bool TestSetup(CInMsg& in) override;
    ETestStatus TestRun(COutMsg& out) override;

  private:
    EResCode Look(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& held);
    bool ReadAll(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& held);
    void LookAgain(CDiagI2cEepromDevice& eeprom, const std::vector<byte_t>& held) const;
    bool PutBack(CDiagI2cEepromDevice& eeprom, const std::vector<byte_t>& held,
                 const std::vector<byte_t>& now, size_t known) const;
    size_t ReadBack(CDiagI2cEepromDevice& eeprom, std::vector<byte_t>& now) const;
    void SendStep(const char* what, size_t at, size_t size) const;
    bool NameChanges(const std::vector<byte_t>& held, const std::vector<byte_t>& now,
                     size_t known) const;
    void NameBytes(const char* fault, const std::vector<byte_t>& held, size_t first,
                   size_t end) const;

    const uint16_t m_xfer_size;
    const bool m_read_only;
};
