// The SPD EEPROM of a DDR3 memory module (JEDEC Standard 21-C, annex K).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "decode/decoded_record.h"

constexpr size_t SPD_SIZE = 256;

// `image` has that many bytes or more.
CDecodedRecord DecodeSpd(std::span<const uint8_t> image);
