// Who made the module, when, and what they call it.
#include <cstdint>
#include <string>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"
#include "decode/jep106.h"
#include "i2c/big_endian.h"

namespace {

using Spd = ddr3_spd_eeprom_t;

bool IsBcd(uint8_t byte) {
    return Bits(byte, 7, 4) <= 9 && Bits(byte, 3, 0) <= 9;
}

unsigned BcdValue(uint8_t byte) {
    return Bits(byte, 7, 4) * 10 + Bits(byte, 3, 0);
}

std::string Date(const Spd& spd) {
    const auto [year, week] = spd.mdate;
    if (!IsBcd(year) || !IsBcd(week) || BcdValue(week) < 1 || BcdValue(week) > 53) {
        return Hex(year) + " " + Hex(week);
    }
    return std::to_string(2000 + BcdValue(year)) + " week " + std::to_string(BcdValue(week));
}

constexpr CFieldDecoder<Spd> FIELDS[] = {
    {"Manufacturing", "Module maker",
     [](const Spd& spd) { return MakerText(spd.mmid_lsb, spd.mmid_msb); }},
    {"Manufacturing", "DRAM maker",
     [](const Spd& spd) { return MakerText(spd.dmid_lsb, spd.dmid_msb); }},
    {"Manufacturing", "Location", [](const Spd& spd) { return Hex(spd.mloc); }},
    {"Manufacturing", "Date", Date},
    {"Manufacturing", "Serial number",
     [](const Spd& spd) { return Hex(BigEndian(spd.sernum), 2 * int{sizeof spd.sernum}); }},
    {"Manufacturing", "Part number", [](const Spd& spd) { return TextOf(spd.mpart); }},
    {"Manufacturing", "Revision",
     [](const Spd& spd) { return Hex(BigEndian(spd.mrev), 2 * int{sizeof spd.mrev}); }},
};

}  // namespace

CSpdFields SpdManufacturingFields() {
    return FIELDS;
}
