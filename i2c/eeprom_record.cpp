#include "i2c/eeprom_record.h"

#include <algorithm>
#include <vector>

#include "i2c/diag_i2c_eeprom_device.h"

std::optional<uint16_t> ReadRecord(CDiagI2cEepromDevice& eeprom, uint8_t step,
                                   std::span<byte_t> record) {
    step = std::max(step, uint8_t{1});
    std::vector<byte_t> bytes(record.begin(), record.end());
    bytes.resize(record.size() + step);
    std::optional<uint16_t> failed;
    for (size_t at = 0; at < record.size() && !failed.has_value(); at += step) {
        const auto addr = static_cast<uint16_t>(at);
        if (!eeprom.ReadMemory(addr, &bytes[at], step)) {
            failed = addr;
        }
    }
    std::copy_n(bytes.begin(), record.size(), record.begin());
    return failed;
}
