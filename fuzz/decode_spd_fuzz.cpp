// Whatever an SPD EEPROM holds, its fields are told in printable words, always the same.
#include <algorithm>
#include <string>
#include <vector>

#include "decode/decode_spd.h"
#include "fuzz/decode_check.h"

namespace {

constexpr size_t MEMORY_TYPE = 2;
constexpr uint8_t DDR3 = 0x0B;

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> image(data, data + size);
    image.resize(SPD_SIZE);
    const CDecodedRecord decoded = DecodeSpd(image);
    RequireShown(decoded);
    RequireContents(decoded, image);
    const CDecodedField& check = decoded.fields.back();
    Require(check.name == "CRC", "the checksum is told last");
    const bool is_right = check.value.ends_with(", right");
    Require(decoded.checks_hold == (is_right && image[MEMORY_TYPE] == DDR3 && !IsBlank(image)),
            "the verdict is that of the checksum, of a DDR3 module");
    Require(LinesOf(DecodeSpd(image)) == LinesOf(decoded), "it is told the same way again");
    return 0;
}
