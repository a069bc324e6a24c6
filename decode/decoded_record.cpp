#include "decode/decoded_record.h"

#include <algorithm>

#include "decode/field_text.h"

void TellIfBlank(std::span<const uint8_t> record, CDecodedRecord& decoded) {
    const uint8_t first = record.front();
    const bool is_blank =
        (first == 0x00 || first == 0xFF) &&
        std::all_of(record.begin(), record.end(), [first](uint8_t byte) { return byte == first; });
    if (is_blank) {
        const std::string_view section = decoded.fields.front().section;
        decoded.fields.insert(decoded.fields.begin(),
                              {section, "Contents", "blank, all " + Hex(first)});
        decoded.checks_hold = false;
    }
}

std::vector<std::string> LinesOf(const CDecodedRecord& decoded) {
    size_t width = 0;
    for (const CDecodedField& field : decoded.fields) {
        width = std::max(width, field.name.size());
    }
    std::vector<std::string> lines;
    std::string_view section;
    for (const CDecodedField& field : decoded.fields) {
        if (field.section != section) {
            section = field.section;
            lines.push_back(std::string(section) + "\n");
        }
        std::string name(field.name);
        name.resize(width, ' ');
        lines.push_back("  " + name + " : " + field.value + "\n");
    }
    return lines;
}
