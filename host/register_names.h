// Registers and their elements by name.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_reg_table.h"

class CDiagMenu;

// 1 for a plain register.
uint32_t ElementCount(const diag_reg_st& reg);
// "ctrl[2]" for an element of an array, else the register's name.
std::string ElementName(const diag_reg_st& reg, uint32_t index);

// How a pattern picks a register: in full by its name or as NAME[INDEX], else by shell
// wildcards if it has any, else by the beginning of the name.
enum class EMatch { NONE, BY_PATTERN, IN_FULL };
// And which of its elements, where it picks it.
struct CMatched {
    EMatch match = EMatch::NONE;
    uint32_t first = 0;
    uint32_t last = 0;
};
CMatched MatchRegister(const std::string& pattern, const diag_reg_st& reg);

// Logs that the register cannot hold the number.
void TellUnfit(const CDiagMenu& teller, const diag_reg_st& reg, uint64_t number);
