// The diagnostics of an SFP or SFP+ module (SFF-8472, address A2h).
#pragma once

#include <cstdint>
#include <span>

#include "decode/decoded_record.h"
#include "i2c/sfp_serial_id.h"

// Adds what the module tells of itself, or why it does not. `image` has the serial ID
// at its beginning, and the 256 bytes of A2h from byte 256 on if it has 512 or more.
void DecodeSfpDiagnostics(const sfp_serial_id_t& id, std::span<const uint8_t> image,
                          CDecodedRecord& decoded);
