// The EEPROM of an SFP or SFP+ module (SFF-8472): the serial ID of its address A0h;
// when the image has the 512 bytes of both addresses, the diagnostics of A2h as well.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "decode/decoded_record.h"

constexpr size_t SFP_SIZE = 128;
// Of everything that answers at one of the two addresses.
constexpr size_t SFP_PAGE_SIZE = 256;

// Whether the module says that it measures itself and answers at A2h at any time; some take
// a page select first. `image` has SFP_SIZE bytes or more.
bool HasSfpDiagnostics(std::span<const uint8_t> image);

// `image` has that many bytes or more.
CDecodedRecord DecodeSfp(std::span<const uint8_t> image);
