#include "decode/decode_spd.h"

#include <array>
#include <bit>
#include <cstring>
#include <string>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"
#include "i2c/crc16.h"

namespace {

using Spd = ddr3_spd_eeprom_t;

constexpr uint8_t DDR3 = 0x0B;

// The checksum leaves out what differs from module to module, when the maker says so.
size_t CoveredBytes(const Spd& spd) {
    return Bit(spd.info_size_crc, 7) ? 117 : 126;
}

uint16_t StoredCrc(const Spd& spd) {
    return static_cast<uint16_t>(spd.crc[1] << 8 | spd.crc[0]);
}

uint16_t CalculatedCrc(const Spd& spd) {
    const auto bytes = std::bit_cast<std::array<uint8_t, SPD_SIZE>>(spd);
    return Crc16(std::span(bytes).first(CoveredBytes(spd)), 0);
}

constexpr CFieldDecoder<Spd> CHECK_FIELDS[] = {
    {"Check", "CRC coverage",
     [](const Spd& spd) { return "bytes 0 to " + std::to_string(CoveredBytes(spd) - 1); }},
    {"Check", "CRC",
     [](const Spd& spd) { return CheckText(StoredCrc(spd), CalculatedCrc(spd), 4); }},
};

}  // namespace

CDecodedRecord DecodeSpd(std::span<const uint8_t> image) {
    Spd spd;
    static_assert(sizeof spd == SPD_SIZE);
    std::memcpy(&spd, image.data(), sizeof spd);
    CDecodedRecord decoded;
    const bool is_crc_right = StoredCrc(spd) == CalculatedCrc(spd);
    const bool is_ddr3 = spd.mem_type == DDR3;
    decoded.checks_hold = is_crc_right && is_ddr3;
    if (is_ddr3 || !is_crc_right) {
        DecodeFields(spd, SpdModuleFields(), decoded);
        DecodeFields(spd, SpdTimingFields(), decoded);
        DecodeFields(spd, SpdFeatureFields(), decoded);
        DecodeFields(spd, SpdPhysicalFields(), decoded);
        DecodeFields(spd, SpdManufacturingFields(), decoded);
    } else {
        DecodeFields(spd, SpdModuleFields().first(1), decoded);
    }
    if (!is_ddr3) {
        // The type itself may be the byte that is broken.
        const auto type = decoded.fields.begin() + 1;
        decoded.fields.insert(
            type,
            {"Module", "Layout",
             is_crc_right ? "not that of DDR3: the rest is not decoded"
                          : "taken for DDR3's: with a wrong CRC the memory type may be wrong too"});
    }
    DecodeFields(spd, CHECK_FIELDS, decoded);
    TellIfBlank(image.first(SPD_SIZE), decoded);
    return decoded;
}
