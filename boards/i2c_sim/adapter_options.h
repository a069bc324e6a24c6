// How the adapters of a run are told apart on the command line of morva-i2c-sim.
#pragma once

#include <cstdint>
#include <string>

#include "boards/i2c_sim/adapter.h"

// What a list such as "i2c,quick,byte" stands for, as I2C_FUNC_*. Throws
// std::invalid_argument, listing the names, for one that is none.
uint32_t FunctionsFrom(const std::string& list);
// "short", or the name of an error number. Throws likewise.
no_ack_t NoAckFrom(const std::string& name);

// All names, for help.
std::string FunctionNames();
std::string NoAckNames();
