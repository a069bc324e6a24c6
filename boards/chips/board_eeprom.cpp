#include "boards/chips/board_eeprom.h"

#include <memory>

#include "boards/chips/board_eeprom_memory.h"
#include "boards/chips/board_eeprom_read.h"
#include "boards/chips/board_eeprom_rw_test.h"
#include "boards/chips/replace_child.h"
#include "framework/diag_exception.h"

namespace {

// The reach of a 16-bit memory address.
constexpr uint32_t LARGEST_SIZE = 0x10000;

}  // namespace

void ReplaceEepromChildren(CDiagI2cEepromDevice& eeprom, const i2c_eeprom_attr_t& attr,
                           uint16_t xfer_size, bool read_only) {
    DIAG_ASSERT(attr.mem_size > 0 && attr.mem_size <= LARGEST_SIZE);
    ReplaceChild(eeprom, std::make_unique<CBoardEepromMemory>(&eeprom, attr.mem_size, read_only,
                                                              attr.mem_addr_size == 1));
    ReplaceChild(eeprom, std::make_unique<CBoardEepromRwTest>(attr, xfer_size, read_only));
    ReplaceChild(eeprom, std::make_unique<CBoardEepromRead>("read", "read EEPROM", attr.mem_size));
    if (read_only) {
        RemoveChildren(eeprom, {"write-byte"});
    }
}
