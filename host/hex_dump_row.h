// One line of a hex dump: the offset it begins with, and its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

enum class EDumpStyle {
    LIST,   // bytes, apart: "92 11", "0x92, 0x11"
    PLAIN,  // nothing but the digits of many bytes: "92110b01..."
    COLON,  // an offset with a colon, the bytes, perhaps two blanks and the text
    BARE,   // an offset, the bytes, perhaps the text between two | or > and <
    C,      // an array in C source, which CInitializer reads
};

// What the text beside words of several bytes says about the order of the bytes in them.
enum class EWordOrder {
    SAME,      // there are no words, or either order gives the same bytes
    FORWARD,   // first byte first
    BACKWARD,  // last byte first
    UNKNOWN,
};

struct CDumpRow {
    bool repeats = false;     // "*": the row above, up to the next offset
    std::string_view offset;  // its digits; empty where the style has none
    std::vector<uint8_t> bytes;
    EWordOrder order = EWordOrder::SAME;
    bool has_bars = false;  // round the text; offsets are hexadecimal then
};

// What the first row of a dump shows its style to be.
EDumpStyle StyleOf(std::string_view row);

// A row of a dump in that style; neither is empty. Throws CUsageError that says what
// was expected.
CDumpRow ParseRow(EDumpStyle style, std::string_view row);
