// What the tests of the SPD EEPROM share.
#pragma once

#include <cstdio>
#include <string>

#include "i2c/diag_spd_eeprom.h"
#include "tests/i2c/record_eeprom_test.h"

class CSpdEepromTest : public CRecordEepromTest<CDiagSpdEepromDevice> {
  protected:
    static constexpr size_t SIZE = 256;

    // The part of a memory module, read `xfer` bytes at a time.
    static i2c_eeprom_attr_t Spd(uint8_t xfer = 128) {
        i2c_eeprom_attr_t attr = Part(SIZE, xfer);
        attr.mem_addr_size = 1;
        return attr;
    }

    // Answers the request and holds what went to standard output meanwhile.
    CAnswer Show() {
        testing::internal::CaptureStdout();
        CAnswer answer = Ask("show-spd-info");
        m_stdout = testing::internal::GetCapturedStdout();
        return answer;
    }
    // The same when what is printed goes to standard output too.
    CAnswer ShowOnTerminal() {
        class CEcho : public ILogSink {
          public:
            bool Takes(unsigned int word) const override { return word == LW_PRINT; }
            void Write(const CLogRecord& record) override {
                std::fputs(record.text.c_str(), stdout);
            }
        };
        CEcho echo;
        const CLogSinkScope scope(echo);
        return Show();
    }

    std::string m_stdout;
};
