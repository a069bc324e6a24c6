// The SMBus operations that an adapter may offer, by what they put on the wire.
#pragma once

#include <linux/i2c.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "boards/root_bus/i2c_msg.h"

// A transfer as SMBus sees it: what is written and what is read, and whether each of the
// two is there at all; a quick command has it with no byte.
struct CSmbusShape {
    std::optional<std::span<const uint8_t>> out;
    std::optional<std::span<uint8_t>> in;
    bool counted = false;  // the first byte of `in` counts the others

    // Nothing for messages that are not at most a write and then a read.
    static std::optional<CSmbusShape> Of(std::span<const CI2cMsg> msgs);

    bool Writes(size_t least, size_t most) const;  // and reads nothing
    bool Reads(size_t least, size_t most) const;   // and writes nothing
    bool Exchanges(size_t written, size_t least, size_t most) const;
    // What is written is a command, a count and as many bytes.
    bool WritesBlock() const;
};

struct smbus_operation_t {
    uint32_t size;           // I2C_SMBUS_*
    bool read;               // what the kernel takes the direction for
    unsigned long function;  // I2C_FUNC_SMBUS_*, which an adapter that can do it has
    const char* function_name;
    bool (*is)(const CSmbusShape& shape);
    uint32_t max_data;  // behind a command byte
};

// Where several put the same bytes on the wire, the plainest comes first.
std::span<const smbus_operation_t> SmbusOperations();
