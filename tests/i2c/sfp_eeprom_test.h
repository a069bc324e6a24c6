// What the tests of the SFP EEPROM share.
#pragma once

#include "i2c/diag_sfp_eeprom.h"
#include "tests/i2c/record_eeprom_test.h"
#include "tests/support/bytes.h"

class CSfpEepromTest : public CRecordEepromTest<CDiagSfpEepromDevice> {
  protected:
    static constexpr size_t SIZE = 128;
    static constexpr size_t TRANSCEIVER_AT = 3;

    // The part of a module, read `xfer` bytes at a time.
    static i2c_eeprom_attr_t Sfp(uint8_t xfer = 128) {
        i2c_eeprom_attr_t attr = Part(256, xfer);
        attr.mem_addr_size = 1;
        return attr;
    }
    CAnswer Show() { return Ask("show-eeprom-info"); }
    CAnswer Type() { return Ask("type"); }
    static Bytes TypeAnswer(uint8_t code, uint32_t type) {
        return CBytes().U8(code).U32(type).Get();
    }
};
