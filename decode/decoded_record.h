// What the bytes of a record mean, in words.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct CDecodedField {
    std::string_view section;  // the same for neighbours that belong together
    std::string_view name;
    std::string value;  // with its unit
};

struct CDecodedRecord {
    std::vector<CDecodedField> fields;
    // Whether the record is sound: all checksums are right, it is not blank, and an SPD
    // is of DDR3.
    bool checks_hold = true;
};

// One entry of a record's table of fields. `decode` gives the value; empty when the
// record does not have the field.
template <class Record>
struct CFieldDecoder {
    std::string_view section;
    std::string_view name;
    std::string (*decode)(const Record&);
};

// Walks such a table.
template <class Record, class Table>
void DecodeFields(const Record& record, const Table& table, CDecodedRecord& decoded) {
    for (const CFieldDecoder<Record>& field : table) {
        std::string value = field.decode(record);
        if (!value.empty()) {
            decoded.fields.push_back({field.section, field.name, std::move(value)});
        }
    }
}

// A record of one byte that nobody wrote, 0x00 or 0xff, is told first, and is not sound:
// the checksums of zeros may be right. `decoded` has fields.
void TellIfBlank(std::span<const uint8_t> record, CDecodedRecord& decoded);

// The lines to print: each section's name on a line of its own, and its fields below
// it with their values in one column. Every line ends with a newline.
std::vector<std::string> LinesOf(const CDecodedRecord& decoded);
