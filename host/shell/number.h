// Numbers as an operator may type them: decimal, 0x hexadecimal, 0o octal or
// 0b binary, with or without sign, and _ between two digits.
#pragma once

#include <cstdint>
#include <string>

struct CNumber {
    uint64_t magnitude = 0;
    bool negative = false;
};

// Both throw CUsageError with a text that says what fits, `range`.
CNumber ParseNumber(const std::string& word, const std::string& range);
// A number from 0 to `max`.
uint64_t ParseUnsigned(const std::string& word, uint64_t max, const std::string& range);
