// What the tests of the manufacturing EEPROM share.
#pragma once

#include <cstdio>
#include <string>

#include "i2c/diag_mfg_eeprom.h"
#include "tests/i2c/crc16_by_division.h"
#include "tests/i2c/record_eeprom_test.h"

class CMfgEepromTest : public CRecordEepromTest<CDiagMfgEepromDevice> {
  protected:
    static constexpr size_t SIZE = 96;
    static constexpr size_t SERIAL_AT = 3;
    static constexpr size_t RSTATE_AT = 65;
    static constexpr size_t CHECKSUM_AT = 94;

    static i2c_eeprom_attr_t Mfg(uint8_t xfer = 32) { return Part(8192, xfer); }

    static Bytes WithChecksum(Bytes image) {
        const uint16_t crc = GenibusByDivision({image.begin(), image.begin() + CHECKSUM_AT});
        image[CHECKSUM_AT] = static_cast<uint8_t>(crc >> 8);
        image[CHECKSUM_AT + 1] = static_cast<uint8_t>(crc);
        return image;
    }
    // A good record with other bytes at `at`.
    static Bytes ImageWith(size_t at, const Bytes& bytes) {
        Bytes image = ImageNamed("mfg");
        std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<ptrdiff_t>(at));
        return WithChecksum(image);
    }
    static Bytes ImageWith(size_t at, const std::string& text) {
        return ImageWith(at, Bytes(text.begin(), text.end()));
    }
};
