// What an operator writes to choose which log texts show: "sw-debug=10", "error=off",
// "all=0".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/diag_log_word.h"

class CLogFilter;

struct CLogSetting {
    ELogTypes type;
    std::optional<unsigned int> level;  // the highest that shows; none hides the type
};

// Any number of TYPE=LEVEL, or TYPE and LEVEL as two words; "all" gives one for
// each type. Throws CUsageError that says what fits.
std::vector<CLogSetting> ParseLogSettings(const std::vector<std::string>& words);

void Apply(const std::vector<CLogSetting>& settings, CLogFilter& filter);
