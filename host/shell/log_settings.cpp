#include "host/shell/log_settings.h"

#include "host/log_filter.h"
#include "host/log_types.h"
#include "host/printable.h"
#include "host/shell/number.h"
#include "host/usage_error.h"

namespace {

constexpr const char* ALL_TYPES = "all";
constexpr const char* OFF = "off";

std::optional<unsigned int> ParseLevel(const std::string& word) {
    if (word == OFF) {
        return std::nullopt;
    }
    return static_cast<unsigned int>(
        ParseUnsigned(word, HIGHEST_LOG_LEVEL, "a level from 0 to 15 or off"));
}

// The types that can be chosen: what commands print always shows.
std::vector<ELogTypes> AllTypes() {
    std::vector<ELogTypes> types;
    for (const CLogTypeName& known : LOG_TYPE_NAMES) {
        if (known.type != LOG_LT_PRINT) {
            types.push_back(known.type);
        }
    }
    return types;
}

std::vector<ELogTypes> ParseTypes(const std::string& name) {
    if (name == ALL_TYPES) {
        return AllTypes();
    }
    const std::optional<ELogTypes> type = FindLogType(name);
    if (type == LOG_LT_PRINT) {
        throw CUsageError("print: what commands print always shows");
    }
    if (!type.has_value()) {
        std::string names;
        for (const ELogTypes known : AllTypes()) {
            names += std::string(LogTypeName(known)) + ", ";
        }
        throw CUsageError("\"" + Printable(name) + "\" is no type of log texts; there are " +
                          names + "and " + ALL_TYPES);
    }
    return {*type};
}

}  // namespace

std::vector<CLogSetting> ParseLogSettings(const std::vector<std::string>& words) {
    std::vector<CLogSetting> settings;
    for (size_t i = 0; i < words.size(); ++i) {
        const size_t equals = words[i].find('=');
        const std::vector<ELogTypes> types = ParseTypes(words[i].substr(0, equals));
        if (equals == std::string::npos && i + 1 == words.size()) {
            throw CUsageError(words[i] + ": the level is missing, 0 to 15, or off");
        }
        const std::optional<unsigned int> level =
            ParseLevel(equals != std::string::npos ? words[i].substr(equals + 1) : words[++i]);
        for (const ELogTypes type : types) {
            settings.push_back({type, level});
        }
    }
    return settings;
}

void Apply(const std::vector<CLogSetting>& settings, CLogFilter& filter) {
    for (const CLogSetting& setting : settings) {
        filter.Set(setting.type, setting.level);
    }
}
