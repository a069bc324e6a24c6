#include "boards/chips/register_part.h"

#include <algorithm>
#include <array>

#include "boards/chips/parts/parts.h"

namespace {

constexpr std::array PARTS = {&ADT7461, &DS3232,  &INA220,  &LM75,           &PCA9534,
                              &PCA9535, &PCA9555, &PCF8574, &QUILLBANK_CPLD, &TMP75};

}  // namespace

std::span<const register_part_t* const> RegisterParts() {
    return PARTS;
}

const register_part_t* FindRegisterPart(std::string_view name) {
    const auto* found = std::find_if(PARTS.begin(), PARTS.end(),
                                     [name](const register_part_t* p) { return p->name == name; });
    return found == PARTS.end() ? nullptr : *found;
}
