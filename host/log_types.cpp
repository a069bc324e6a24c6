#include "host/log_types.h"

#include <algorithm>

const char* LogTypeName(ELogTypes type) {
    const auto* known =
        std::find_if(LOG_TYPE_NAMES.begin(), LOG_TYPE_NAMES.end(),
                     [type](const CLogTypeName& candidate) { return candidate.type == type; });
    return known != LOG_TYPE_NAMES.end() ? known->name : "other";
}

std::optional<ELogTypes> FindLogType(std::string_view name) {
    const auto* known =
        std::find_if(LOG_TYPE_NAMES.begin(), LOG_TYPE_NAMES.end(),
                     [name](const CLogTypeName& candidate) { return candidate.name == name; });
    return known != LOG_TYPE_NAMES.end() ? std::optional(known->type) : std::nullopt;
}
