// A transfer over an adapter that knows SMBus operations alone: by the one whose bytes on
// the wire are those of the transfer.
#pragma once

#include <span>
#include <string>

#include "boards/linux/i2c_adapter.h"
#include "boards/root_bus/i2c_msg.h"

// What the adapter cannot carry is refused with a text that names it and what it misses.
// `bus` is the bus in the other texts.
CI2cResult SmbusTransfer(CI2cAdapter& adapter, std::span<const CI2cMsg> msgs,
                         const std::string& bus);

// The most data bytes that an adapter moves behind a command byte so.
uint32_t MaxSmbusData(const CI2cAdapter& adapter);
