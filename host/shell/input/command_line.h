// A line and the commands in it.
//
// Words are separated by blanks and tabs. '...' takes everything as it stands;
// "..." and bare words know the escapes \\ \" \' \n \t \r \0 \xHH and, in bare
// words, a backslash before a blank and before # & ; as these themselves. A # at
// the beginning of a word starts a comment.
//
// Commands are separated by ; (go on), && (go on only after success) and & (the
// command before it runs in the background). A ; may also end the line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct CCommand {
    std::vector<std::string> words;
    bool background = false;
    bool after_success = false;  // it stands behind &&
};

// Throws CUsageError, which names the column, for an open quote, an unknown
// escape, a bare control character or a separator that lacks its command.
std::vector<CCommand> ParseLine(std::string_view line);
