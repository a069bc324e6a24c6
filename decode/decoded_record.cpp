#include "decode/decoded_record.h"

#include <algorithm>

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
