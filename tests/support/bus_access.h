// Transfers through a bus, as the "trans" command makes them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "i2c/diag_i2c_device.h"

// Writes the command bytes and reads `size` bytes; nothing when that fails.
inline std::optional<std::vector<uint8_t>> ReadBus(CI2cDevice& bus, uint8_t addr,
                                                   const std::vector<uint8_t>& command,
                                                   uint8_t size) {
    std::vector<uint8_t> data(size);
    CI2cXfrReq req;
    req.saddr = addr;
    req.dir = 1;
    req.switch_ch = -1;
    req.cmd_sel = static_cast<byte_t>(command.size());
    for (size_t i = 0; i < command.size(); ++i) {
        req.cmd = static_cast<uint16_t>(req.cmd | command[i] << (8 * i));
    }
    req.data = data.data();
    req.tsize = size;
    return bus.I2cTrans(req) ? std::optional(data) : std::nullopt;
}

// Writes bytes without a command; false when that fails.
inline bool WriteBus(CI2cDevice& bus, uint8_t addr, std::vector<uint8_t> data) {
    CI2cXfrReq req;
    req.saddr = addr;
    req.switch_ch = -1;
    req.data = data.data();
    req.tsize = static_cast<byte_t>(data.size());
    return bus.I2cTrans(req);
}
