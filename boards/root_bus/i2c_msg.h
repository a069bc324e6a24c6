// What goes over the wire in one go, and how it went.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

// One message: an address and the bytes that are written to it or read from it.
struct CI2cMsg {
    uint8_t addr = 0;  // 7 bits
    bool read = false;
    std::span<uint8_t> data;  // source of a write, destination of a read; may be empty
    // An SMBus block: the first byte read tells how many follow. For controllers that can
    // read one no other way; `data` is what will follow if all goes well.
    bool counted = false;
};

enum EI2cOutcome : uint8_t {
    I2C_OK = 0,
    I2C_NO_ADDR_ACK = 1,  // nobody acknowledged the address of message `msg`
    I2C_NO_DATA_ACK = 2,  // byte `byte` of message `msg` was not acknowledged
    I2C_BUS_STUCK = 3,    // a line is held low
    I2C_ARB_LOST = 4,     // another master won
    I2C_OTHER = 5,        // `text` tells what
};

struct CI2cResult {
    EI2cOutcome outcome = I2C_OK;
    size_t msg = 0;
    size_t byte = 0;
    std::string text;  // of I2C_OTHER; of another outcome, what there is to be said besides

    bool IsOk() const { return outcome == I2C_OK; }

    static CI2cResult Ok() { return {}; }
    static CI2cResult NoAddrAck(size_t msg) { return {I2C_NO_ADDR_ACK, msg, 0, {}}; }
    static CI2cResult NoDataAck(size_t msg, size_t byte) {
        return {I2C_NO_DATA_ACK, msg, byte, {}};
    }
    static CI2cResult BusStuck() { return {I2C_BUS_STUCK, 0, 0, {}}; }
    static CI2cResult ArbLost() { return {I2C_ARB_LOST, 0, 0, {}}; }
    static CI2cResult Other(std::string text) { return {I2C_OTHER, 0, 0, std::move(text)}; }
};
