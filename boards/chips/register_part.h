// Chips that are a table of registers: a pointer byte chooses one, its bytes follow, the
// most significant first.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "framework/diag_reg_table.h"

struct register_part_t {
    std::string_view name;  // as in the compatible, without the vendor
    const char* what;       // "temperature sensor"
    std::span<const diag_reg_st> registers;
};

// A register of such a table; shown in hexadecimal with all digits. `mask` is the bits that
// exist, `reset` their values after power-on.
constexpr diag_reg_st Register(const char* name, uint8_t pointer, EValueType type,
                               diag_regacc_et access, uint64_t mask, uint64_t reset,
                               const char* desc) {
    return {.name = name,
            .desc = desc,
            .dtype = type,
            .format = VF_HEX | VF_PAD,
            .offset = pointer,
            .access = access,
            .flags = 0,
            .num_regs = 1,
            .addr_stride = 0,
            .mask = mask,
            .init_data = reset,
            .p_reginfo = nullptr};
}

// A quantity: shown in decimal.
constexpr diag_reg_st Decimal(diag_reg_st reg) {
    reg.format = 0;
    return reg;
}

// Of a register of that integer type.
constexpr uint32_t BytesOf(EValueType type) {
    constexpr uint32_t BYTES[] = {1, 1, 2, 2, 4, 4, 8, 8};
    return BYTES[type];
}

// `count` of them, one behind the other.
constexpr diag_reg_st Array(diag_reg_st reg, uint32_t count) {
    reg.num_regs = count;
    reg.addr_stride = BytesOf(reg.dtype);
    return reg;
}

// One that is written by another pointer than it is read by.
constexpr uint32_t HAS_WRITE_POINTER = 0x100;
constexpr diag_reg_st WrittenAt(diag_reg_st reg, uint8_t pointer) {
    reg.flags = HAS_WRITE_POINTER | pointer;
    return reg;
}

// One of a chip that knows no pointer byte.
constexpr uint32_t HAS_NO_POINTER = 0x200;
constexpr diag_reg_st WithoutPointer(diag_reg_st reg) {
    reg.flags = HAS_NO_POINTER;
    return reg;
}

std::span<const register_part_t* const> RegisterParts();
// The part of that name, or null.
const register_part_t* FindRegisterPart(std::string_view name);
