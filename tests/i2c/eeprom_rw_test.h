// What the tests of "rw-test" share: a range to run it over, and what its
// phases do to the chip.
#pragma once

#include <string>

#include "framework/diag_functions.h"
#include "framework/diag_test_base.h"
#include "tests/i2c/eeprom_test.h"

class CEepromRwTest : public CEepromTest {
  protected:
    CDiagTestBase& Test() { return dynamic_cast<CDiagTestBase&>(Node("rw-test")); }
    CAnswer Run(uint16_t start, uint16_t end) { return Call("rw-test", start, end); }

    // The bytes that the write phase puts into a range of `count`.
    static Bytes Pattern(size_t count) {
        unsigned int state = 0xCDEBFA0F;
        Bytes bytes;
        while (bytes.size() < count) {
            bytes.push_back(static_cast<uint8_t>(DiagRand_R(&state) >> 24));
        }
        return bytes;
    }
    Bytes Memory(size_t addr, size_t count) {
        Bytes bytes;
        for (size_t i = 0; i < count; ++i) {
            bytes.push_back(m_bus.At(addr + i));
        }
        return bytes;
    }
    // What the four phases put on the bus, one behind the other.
    static CCalls FourPhases(const CCalls& chunks) {
        CCalls calls;
        for (const char* operation : {"RD ", "WR ", "RD ", "WR "}) {
            for (const std::string& chunk : chunks) {
                calls.push_back(operation + chunk);
            }
        }
        return calls;
    }
    // The first `count` calls, then a whole restore of those chunks.
    static CCalls CutAndRestored(const CCalls& chunks, size_t count) {
        CCalls calls = FourPhases(chunks);
        calls.resize(count);
        for (const std::string& chunk : chunks) {
            calls.push_back("WR " + chunk);
        }
        return calls;
    }
};
