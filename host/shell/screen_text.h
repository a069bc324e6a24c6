// Text for one row of a screen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Without what moves the cursor or is no character; a tab becomes a space.
std::string OnOneRow(std::string_view text);
// Columns that such a text takes.
size_t ColumnsOf(std::string_view text);
// As much of it as fits into the columns.
std::string CutToColumns(std::string_view text, size_t columns);
// The same with "..." at its end where something was cut off.
std::string Shortened(std::string_view text, size_t columns);
