// The free functions of the contract.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_types.h"

// Text of a number. `format`: 0 for decimal, 16 (VF_HEX) for hexadecimal with
// "0x" and no leading zeros, VF_HEX | VF_PAD for all digits of the type's
// width; other bits are ignored.
std::string toString(uint8_t value, uint8_t format);
std::string toString(uint32_t value, uint8_t format);
std::string toString(uint64_t value, uint8_t format);
std::string toString(int64_t value, uint8_t format);

// Text of an EResCode: the enumerator without "MSG_".
const char* resCode2str(int code);

// Text of an operating-system error number.
std::string GetErrorStr(int err);
// The calling thread's last operating-system error number.
int GetLastOsErr();

void MsSleep(unsigned int ms);

// Pseudo-random 32-bit number from the caller's state (a linear congruential
// generator: the top bits are the good ones). The same seed gives the same
// sequence on every machine.
uint32_t DiagRand_R(unsigned int* state);

// SendLog for code that has no node at hand.
void diag_pf_send_log(unsigned int logword, const char* fmt, ...)
    __attribute__((format(printf, 2, 3)));

// Converts a command argument to register data of an integer type. A negative
// number arrives sign-extended. False when the type is no integer or does not
// hold the number.
bool reg_data_from_arg(uint64_t* out, EValueType type, uint64_t arg);
// Formats register data; `format` as for toString. False when the type is no integer.
bool reg_data_to_string(std::string& out, uint64_t* data, EValueType type, uint8_t format);

// Splits NAME or NAME[INDEX] (decimal, or hexadecimal with 0x) and tells
// whether there was an index; without one it is 0. Text that is neither is a
// name as a whole.
bool diag_crack_regname_index(std::string& name, unsigned int& index, const std::string& arg);
