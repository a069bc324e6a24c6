// The part that a compatible text names: what stands behind the comma, if any.
#pragma once

#include <string_view>

inline std::string_view PartName(std::string_view compatible) {
    return compatible.substr(compatible.find(',') + 1);
}
