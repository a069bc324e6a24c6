// The word that is being typed, for who completes it. Follows the quoting rules
// of command_line.h, but takes a line as far as it goes: open quotes and broken
// escapes are no errors while someone types.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct CWordAtCursor {
    std::vector<std::string> before;  // the words of its command that stand before it
    std::string word;                 // up to the cursor, without quotes and escapes
    size_t begin = 0;                 // where it begins in the line
    char quote = '\0';                // the quote that is open at the cursor, if one is
    bool in_comment = false;          // then there is no word
};

// `cursor` is the number of bytes before the cursor; what stands behind it does
// not count.
CWordAtCursor WordAtCursor(std::string_view line, size_t cursor);

// The word as it is typed behind an opening `quote`, or bare where there is none
// or where it cannot hold the word; with the closing quote if `closed`.
std::string Quoted(std::string_view word, char quote, bool closed);
