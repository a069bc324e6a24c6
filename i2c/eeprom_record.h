// The record that an EEPROM begins with.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "framework/diag_types.h"

class CDiagI2cEepromDevice;

// Reads from memory address 0 on, `step` bytes at a time; the last step is asked
// for whole too, though it may pass the end of the record. The way to the chip
// must be open. Returns the address of the step that failed, if one did; what was
// not read stays as it was.
std::optional<uint16_t> ReadRecord(CDiagI2cEepromDevice& eeprom, uint8_t step,
                                   std::span<byte_t> record);
