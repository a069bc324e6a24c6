// The records that can be told in words, by kind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "decode/decoded_record.h"

struct CDecoder {
    std::string_view kind;  // as it is typed: "spd"
    std::string_view what;  // "SPD EEPROM of a DDR3 module"
    size_t size;            // bytes of the record; an image may have more
    // Of `size` bytes or more. Never fails: what is wrong with a record, it says in words.
    CDecodedRecord (*decode)(std::span<const uint8_t> image);
};

std::span<const CDecoder> Decoders();
// Null when there is no such kind.
const CDecoder* FindDecoder(std::string_view kind);
