#include "boards/i2c_sim/smbus_data.h"

bool HasSmbusData(uint32_t size, uint8_t read_write) {
    return size != I2C_SMBUS_QUICK && size <= I2C_SMBUS_I2C_BLOCK_DATA &&
           (size != I2C_SMBUS_BYTE || read_write != I2C_SMBUS_WRITE);
}

size_t SmbusDataSize(uint32_t size) {
    switch (size) {
        case I2C_SMBUS_BYTE:
        case I2C_SMBUS_BYTE_DATA:
            return sizeof(i2c_smbus_data::byte);
        case I2C_SMBUS_WORD_DATA:
        case I2C_SMBUS_PROC_CALL:
            return sizeof(i2c_smbus_data::word);
        default:
            return sizeof(i2c_smbus_data::block);
    }
}

bool IsSmbusDataRead(uint32_t size, uint8_t read_write) {
    if (!HasSmbusData(size, read_write)) {
        return false;
    }
    return read_write == I2C_SMBUS_WRITE || size == I2C_SMBUS_PROC_CALL ||
           size == I2C_SMBUS_BLOCK_PROC_CALL || size == I2C_SMBUS_I2C_BLOCK_DATA;
}

bool IsSmbusDataWritten(uint32_t size, uint8_t read_write) {
    if (!HasSmbusData(size, read_write)) {
        return false;
    }
    return read_write == I2C_SMBUS_READ || size == I2C_SMBUS_PROC_CALL ||
           size == I2C_SMBUS_BLOCK_PROC_CALL;
}
