// The checksum of a parameter EEPROM's image.
#pragma once

#include <cstdint>

// CRC-32 with polynomial 0x04C11DB7, most significant bit first, nothing inverted
// and no length appended; 0x89A1897F for "123456789" from 0 on. `crc` is 0 at
// first, else what the bytes before gave.
uint32_t crc32_posix(uint32_t crc, const void* data, uint32_t len);
