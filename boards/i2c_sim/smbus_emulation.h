// The operations of I2C_SMBUS, made of messages.
#pragma once

#include <linux/i2c.h>

#include <cstdint>

#include "boards/i2c_sim/adapter.h"

struct smbus_operation_t {
    uint8_t addr;
    bool pec;  // with a packet error code, where the operation has one
    bool read;
    uint8_t command;
    uint32_t size;  // I2C_SMBUS_*
};

// 0, or a negated errno. `data` is what the operation takes, and then what it gave; of a
// block its first byte says how many follow.
int SmbusTransfer(CAdapter& adapter, const smbus_operation_t& operation, i2c_smbus_data& data);
