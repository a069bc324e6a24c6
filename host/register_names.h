// Registers and their elements by name.
#pragma once

#include <cstdint>
#include <string>

#include "framework/diag_reg_table.h"

// 1 for a plain register.
uint32_t ElementCount(const diag_reg_st& reg);
// "ctrl[2]" for an element of an array, else the register's name.
std::string ElementName(const diag_reg_st& reg, uint32_t index);

// How a pattern picks a register: by shell wildcards if it has any, else by the
// beginning of the name.
enum class EMatch { NONE, BY_PATTERN, IN_FULL };
EMatch MatchRegister(const std::string& pattern, const diag_reg_st& reg);
