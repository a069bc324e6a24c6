#include "host/register_names.h"

#include <fnmatch.h>

#include <string_view>

#include "framework/diag_functions.h"
#include "framework/diag_log_word.h"
#include "framework/diag_menu.h"

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

CMatched MatchRegister(const std::string& pattern, const diag_reg_st& reg) {
    const uint32_t last = ElementCount(reg) - 1;
    std::string name;
    unsigned int index = 0;
    if (diag_crack_regname_index(name, index, pattern) && name == reg.name) {
        return index <= last ? CMatched{EMatch::IN_FULL, index, index} : CMatched{};
    }
    if (pattern == reg.name) {
        return {EMatch::IN_FULL, 0, last};
    }
    const bool wildcards = pattern.find_first_of("*?[") != std::string::npos;
    const bool hit = wildcards ? ::fnmatch(pattern.c_str(), reg.name, 0) == 0
                               : std::string_view(reg.name).starts_with(pattern);
    return hit ? CMatched{EMatch::BY_PATTERN, 0, last} : CMatched{};
}

void TellUnfit(const CDiagMenu& teller, const diag_reg_st& reg, uint64_t number) {
    teller.SendLog(LW_WARN, "%s does not fit register %s\n", toString(number, VF_HEX).c_str(),
                   reg.name);
}
