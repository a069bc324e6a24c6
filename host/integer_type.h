// Properties of the integer value types: enumerators come in pairs of signed
// and unsigned, each pair twice as wide as the one before.
#pragma once

#include "framework/diag_types.h"

constexpr bool IsIntegerType(EValueType type) {
    return type <= VT_UINT64;
}
constexpr bool IsSignedType(EValueType type) {
    return (type & 1U) == 0;
}
constexpr unsigned int BitsOfType(EValueType type) {
    return 8U << (type / 2U);
}
