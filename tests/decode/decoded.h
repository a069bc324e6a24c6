// What tests of decoders look at.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "decode/decoded_record.h"

// The value of that name; "absent" when the record has none.
inline std::string ValueOf(const CDecodedRecord& decoded, std::string_view name) {
    for (const CDecodedField& field : decoded.fields) {
        if (field.name == name) {
            return field.value;
        }
    }
    return "absent";
}

inline std::string LinesInOne(const CDecodedRecord& decoded) {
    std::string text;
    for (const std::string& line : LinesOf(decoded)) {
        text += line;
    }
    return text;
}

inline std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// An image of the default board.
inline std::vector<uint8_t> BoardImage(const std::string& name) {
    const std::string text = FileText(std::string(DECODE_IMAGES) + "/" + name);
    return {text.begin(), text.end()};
}

inline std::string Expected(const std::string& name) {
    return FileText(std::string(DECODE_EXPECTED) + "/" + name);
}
