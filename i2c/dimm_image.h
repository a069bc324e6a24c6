// The image of a DIMM table: 32-bit words, a header and then the modules back
// to back. The table's signature chooses between two layouts of a module.
#pragma once

#include <cstdint>
#include <vector>

#include "i2c/dimm_table.h"

// Of a table in the extended layout: "VELD".
inline constexpr uint32_t EXTENDED_SIGNATURE = 0x56454C44;

// Where the words of the header stand, in bytes.
enum EDimmHeader : uint16_t {
    DIMM_CRC_AT = 0,
    DIMM_VERSION_AT = 4,
    DIMM_LENGTH_AT = 8,
    DIMM_SIGNATURE_AT = 12,
    DIMM_ENTRIES_AT = 16,
    DIMM_FIRST_ENTRY_AT = 20,
};

// Bytes of a word, and of an offset with its value.
inline constexpr uint16_t DIMM_WORD = 4;
inline constexpr uint16_t DIMM_PAIR = 8;

struct CDimmLayout {
    bool extended;
    uint32_t entry_words;       // of a module without its register pairs
    uint32_t part_number_size;  // characters

    static CDimmLayout Of(const DimmTable& table);
};

// The words of a module's fields as they are stored.

// Extended: both halves of the identifier; compact: its low 16 bits, in the
// upper half of one word.
std::vector<uint32_t> ManufacturerWords(const CDimmLayout& layout, const Entries& entry);
// The first character in the most significant byte; cut, or padded with blanks,
// to the layout's size, then with 0 to a whole word.
std::vector<uint32_t> PartNumberWords(const CDimmLayout& layout, const Entries& entry);
uint32_t RevisionWord(const Entries& entry);
