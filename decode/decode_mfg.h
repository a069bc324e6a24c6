// The manufacturing record of a board.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "decode/decoded_record.h"

constexpr size_t MFG_SIZE = 96;

// `image` has that many bytes or more.
CDecodedRecord DecodeMfg(std::span<const uint8_t> image);
