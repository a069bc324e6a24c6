// What the kernel's answer to a transfer means.
#pragma once

#include <span>
#include <string>

#include "boards/root_bus/i2c_msg.h"

// An error number as its name and the system's text: "ENODEV (No such device)".
std::string ErrorText(int error);

// What a transfer does, without its address: "write 2 bytes, read 16 bytes".
std::string TransferText(std::span<const CI2cMsg> msgs);

// A transfer that failed for a reason of its own; `bus` is the bus in the texts.
CI2cResult FailedResult(std::span<const CI2cMsg> msgs, const std::string& bus,
                        const std::string& reason);

// `moved`: the messages that were moved, or a negated errno. Adapters report a
// missing acknowledge in several ways: as ENXIO, EREMOTEIO or ETIMEDOUT, or as a short
// count.
CI2cResult ResultOf(int moved, std::span<const CI2cMsg> msgs, const std::string& bus);
