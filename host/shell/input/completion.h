// What Tab does to a line: completes the word at the cursor, as far as only one
// thing can be meant, or tells which argument is due.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class CShell;

struct CCompletion {
    // From here up to the cursor the line is replaced by `text`, which is what
    // stands there already where nothing can be added.
    size_t begin = 0;
    std::string text;
    // How many things fit, and the first of them as they are listed.
    size_t count = 0;
    std::vector<std::string> candidates;
    // Lines about the argument that is due, where it cannot be completed.
    std::string hint;
};

// `cursor` is the number of bytes before the cursor.
CCompletion Complete(const CShell& shell, std::string_view line, size_t cursor);

// The words that a parameter takes, where its description is a list of them, as
// in "rd/wr" and "fault to inject (nack|arbitration)".
std::vector<std::string> EnumeratedWords(std::string_view description);
