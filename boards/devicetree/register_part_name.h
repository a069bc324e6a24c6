// The register chip that the tables know a part by.
#pragma once

#include <string_view>

// What stands behind the comma of a compatible text, or the part that has the same
// registers and is in the tables, as "tmp75" for "ti,tmp275".
std::string_view RegisterPartName(std::string_view compatible);
