#include "decode/decoders.h"

#include <algorithm>
#include <array>

#include "decode/decode_mfg.h"
#include "decode/decode_sfp.h"
#include "decode/decode_spd.h"

namespace {

constexpr std::array<CDecoder, 3> DECODERS{{
    {"spd", "SPD EEPROM of a DDR3 module", SPD_SIZE, DecodeSpd},
    {"sfp", "EEPROM of an SFP or SFP+ module", SFP_SIZE, DecodeSfp},
    {"mfg", "manufacturing EEPROM", MFG_SIZE, DecodeMfg},
}};

}  // namespace

std::span<const CDecoder> Decoders() {
    return DECODERS;
}

const CDecoder* FindDecoder(std::string_view kind) {
    const auto* found = std::find_if(DECODERS.begin(), DECODERS.end(),
                                     [kind](const CDecoder& d) { return d.kind == kind; });
    return found == DECODERS.end() ? nullptr : found;
}
