// What an operation of I2C_SMBUS does with the data that a program hands over.
#pragma once

#include <linux/i2c.h>

#include <cstddef>
#include <cstdint>

// `size` is an I2C_SMBUS_*, or a number that is none.

// Whether it needs any.
bool HasSmbusData(uint32_t size, uint8_t read_write);
// How many bytes of it.
size_t SmbusDataSize(uint32_t size);
// Whether it takes them from the program, and whether it gives the program some.
bool IsSmbusDataRead(uint32_t size, uint8_t read_write);
bool IsSmbusDataWritten(uint32_t size, uint8_t read_write);
