// The name that the tables of register chips and multiplexers know a part by.
#pragma once

#include <string_view>

// What stands behind the comma of a compatible text, or the part that has the same
// registers and is in the tables, as "tmp75" for "ti,tmp275".
std::string_view KnownPartName(std::string_view compatible);
