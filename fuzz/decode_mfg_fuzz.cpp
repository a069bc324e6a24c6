// Any bytes decode as a manufacturing record, and its checksum is told as it is.
#include <algorithm>
#include <vector>

#include "decode/decode_mfg.h"
#include "fuzz/decode_check.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Allocated to the byte, so that a sanitizer sees one too many.
    std::vector<uint8_t> image(MFG_SIZE, 0);
    std::copy_n(data, std::min(size, MFG_SIZE), image.begin());
    const CDecodedRecord decoded = DecodeMfg(image);
    RequireShown(decoded);
    RequireVerdicts(decoded, image);
    return 0;
}
