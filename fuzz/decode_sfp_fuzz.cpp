// Any bytes decode as an SFP's EEPROM: a serial ID alone, the whole of its address, and
// both addresses.
#include <algorithm>
#include <vector>

#include "decode/decode_sfp.h"
#include "fuzz/decode_check.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const size_t length : {SFP_SIZE, size_t{256}, size_t{512}}) {
        // Allocated to the byte, so that a sanitizer sees one too many.
        std::vector<uint8_t> image(length, 0);
        std::copy_n(data, std::min(size, length), image.begin());
        const CDecodedRecord decoded = DecodeSfp(image);
        RequireShown(decoded);
        RequireVerdicts(decoded, std::span(image).first(SFP_SIZE));
    }
    return 0;
}
