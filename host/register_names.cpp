#include "host/register_names.h"

#include <fnmatch.h>

uint32_t ElementCount(const diag_reg_st& reg) {
    return reg.num_regs > 1 ? reg.num_regs : 1;
}

std::string ElementName(const diag_reg_st& reg, uint32_t index) {
    std::string name = reg.name;
    if (ElementCount(reg) > 1) {
        name += "[" + std::to_string(index) + "]";
    }
    return name;
}

EMatch MatchRegister(const std::string& pattern, const diag_reg_st& reg) {
    const std::string name = reg.name;
    if (pattern == name) {
        return EMatch::IN_FULL;
    }
    const bool wildcards = pattern.find_first_of("*?[") != std::string::npos;
    const bool hit =
        wildcards ? ::fnmatch(pattern.c_str(), reg.name, 0) == 0 : name.starts_with(pattern);
    return hit ? EMatch::BY_PATTERN : EMatch::NONE;
}
