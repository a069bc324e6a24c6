// What holds of every decoded record, whatever its bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "decode/decoded_record.h"
#include "fuzz/fuzz_target.h"

inline bool IsShown(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

inline void RequireShown(const CDecodedRecord& decoded) {
    Require(!decoded.fields.empty(), "a record has fields");
    for (const CDecodedField& field : decoded.fields) {
        Require(IsShown(field.section), "sections have printable names");
        Require(IsShown(field.name), "fields have printable names");
        Require(IsShown(field.value), "fields have printable values");
    }
}

// A record that nobody wrote is told first, and no other.
inline bool IsBlank(std::span<const uint8_t> record) {
    const auto is_all = [record](uint8_t value) {
        return std::all_of(record.begin(), record.end(), [value](uint8_t b) { return b == value; });
    };
    return is_all(0x00) || is_all(0xFF);
}

inline void RequireContents(const CDecodedRecord& decoded, std::span<const uint8_t> record) {
    Require((decoded.fields.front().name == "Contents") == IsBlank(record),
            "what is blank is told so");
}

// A checksum is told right or wrong, and the record knows of each that is wrong.
inline void RequireVerdicts(const CDecodedRecord& decoded, std::span<const uint8_t> record) {
    RequireContents(decoded, record);
    size_t right = 0;
    size_t wrong = 0;
    for (const CDecodedField& field : decoded.fields) {
        if (field.name.starts_with("CC_") || field.name.starts_with("CRC")) {
            right += field.value.ends_with(", right") ? 1 : 0;
            wrong += field.value.find(", wrong: calculated 0x") != std::string::npos ? 1 : 0;
        }
    }
    Require(right + wrong != 0, "a checksum has a verdict");
    Require(decoded.checks_hold == (wrong == 0 && !IsBlank(record)),
            "the checks hold when none is told wrong");
}
