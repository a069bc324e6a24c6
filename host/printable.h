// Text that is safe to show on a terminal.
#pragma once

#include <string>
#include <string_view>

// Control characters and bytes that are no valid UTF-8 become \n, \t or \xHH.
std::string Printable(std::string_view text);
