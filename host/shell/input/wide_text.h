// Text as the line editor has it, and as the shell has it.
#pragma once

#include <string>
#include <string_view>

// What cannot be said in the other becomes a "?".
std::wstring Widened(std::string_view text);
std::string Narrowed(std::wstring_view text);
