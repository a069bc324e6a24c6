// Where a line stands on the screen while it is edited.
#pragma once

#include <cstddef>
#include <string_view>

// The row, from 0 where the prompt begins, that the cursor is in behind the
// prompt and this part of the line.
size_t RowOfCursor(std::wstring_view prompt, std::wstring_view before, unsigned int columns);
