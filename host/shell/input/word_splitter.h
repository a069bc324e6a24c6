// Splits a line into words.
//
// Words are separated by blanks and tabs. '...' takes everything as it stands;
// "..." and bare words know the escapes \\ \" \' \n \t \r \0 \xHH and, in bare
// words, "\ " for a blank. A # at the beginning of a word starts a comment. A
// bare & at the end asks for the background.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct CSplitLine {
    std::vector<std::string> words;  // without the & at the end
    bool background = false;
};

// Throws CUsageError, which names the column, for an open quote, an unknown
// escape or a bare control character.
CSplitLine SplitLine(std::string_view line);
