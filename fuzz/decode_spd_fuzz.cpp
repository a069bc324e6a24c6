// Whatever an SPD EEPROM holds, its fields are told in printable words, always the same.
#include <algorithm>
#include <string>
#include <vector>

#include "decode/decode_spd.h"
#include "fuzz/fuzz_target.h"

namespace {

bool IsPrintable(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> image(data, data + size);
    image.resize(SPD_SIZE);
    const CDecodedRecord decoded = DecodeSpd(image);
    Require(!decoded.fields.empty(), "there is something to tell");
    for (const CDecodedField& field : decoded.fields) {
        Require(IsPrintable(field.section) && IsPrintable(field.name) && IsPrintable(field.value),
                "every word can be printed");
    }
    const CDecodedField& check = decoded.fields.back();
    Require(check.name == "CRC" && check.value.ends_with(", right") == decoded.checks_hold,
            "the verdict is that of the checksum");
    Require(LinesOf(DecodeSpd(image)) == LinesOf(decoded), "it is told the same way again");
    return 0;
}
