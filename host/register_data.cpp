// Register data: conversion from arguments, to text, and register names.
#include <cerrno>
#include <cstdlib>
#include <limits>

#include "framework/diag_functions.h"
#include "host/integer_type.h"
#include "host/number_text.h"

namespace {

int64_t SignExtend(uint64_t value, unsigned int bits) {
    const unsigned int unused = 64U - bits;
    return static_cast<int64_t>(value << unused) >> unused;
}

bool ParseIndex(unsigned int& index, const std::string& text) {
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return false;
    }
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(text.c_str(), &end, hex ? 16 : 10);
    if (errno != 0 || end != text.c_str() + text.size() ||
        value > std::numeric_limits<unsigned int>::max()) {
        return false;
    }
    index = static_cast<unsigned int>(value);
    return true;
}

}  // namespace

bool reg_data_from_arg(uint64_t* out, EValueType type, uint64_t arg) {
    if (!IsIntegerType(type)) {
        return false;
    }
    const unsigned int bits = BitsOfType(type);
    if (bits < 64) {
        const uint64_t mask = (uint64_t{1} << bits) - 1;
        const bool fits = IsSignedType(type) ? SignExtend(arg, bits) == static_cast<int64_t>(arg)
                                             : (arg & ~mask) == 0;
        if (!fits) {
            return false;
        }
        arg &= mask;
    }
    *out = arg;
    return true;
}

bool reg_data_to_string(std::string& out, uint64_t* data, EValueType type, uint8_t format) {
    if (!IsIntegerType(type)) {
        return false;
    }
    const unsigned int bits = BitsOfType(type);
    const uint64_t mask = bits < 64 ? (uint64_t{1} << bits) - 1 : ~uint64_t{0};
    const uint64_t value = *data & mask;
    if (IsSignedType(type) && (format & VF_HEX) == 0) {
        out = toString(SignExtend(value, bits), format);
        return true;
    }
    out = NumberText(value, bits / 8, format);
    return true;
}

bool diag_crack_regname_index(std::string& name, unsigned int& index, const std::string& arg) {
    name = arg;
    index = 0;
    const size_t open = arg.find('[');
    if (open == std::string::npos || open == 0 || arg.back() != ']') {
        return false;
    }
    if (!ParseIndex(index, arg.substr(open + 1, arg.size() - open - 2))) {
        return false;
    }
    name = arg.substr(0, open);
    return true;
}
