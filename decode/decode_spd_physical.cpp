// How the module is built, and what else is on it besides DRAM.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "decode/decode_spd_codes.h"
#include "decode/decode_spd_sections.h"
#include "decode/jep106.h"

namespace {

using Spd = ddr3_spd_eeprom_t;

// The module section's first three bytes are the same for all types of module.
ddr3_spd_unbuffered_t Unbuffered(const Spd& spd) {
    return std::bit_cast<ddr3_spd_unbuffered_t>(spd.mod_section);
}

ddr3_spd_registered_t Registered(const Spd& spd) {
    return std::bit_cast<ddr3_spd_registered_t>(spd.mod_section);
}

bool Is(const Spd& spd, SpdLayout layout) {
    return LayoutOf(spd) == layout;
}

// A length in steps of a millimetre: code 0 is `base` or less, the last is open.
std::string LengthText(unsigned code, unsigned base, unsigned last_code) {
    if (code == 0) {
        return "up to " + std::to_string(base) + " mm";
    }
    const unsigned above = base + code - 1;
    if (code == last_code) {
        return "more than " + std::to_string(above) + " mm";
    }
    return std::to_string(above) + " to " + std::to_string(above + 1) + " mm";
}

std::string Height(const Spd& spd) {
    if (Is(spd, SpdLayout::UNKNOWN)) {
        return "";
    }
    return LengthText(Bits(Unbuffered(spd).mod_height, 4, 0), 15, 31);
}

std::string ThicknessOf(const Spd& spd, int high, int low) {
    if (Is(spd, SpdLayout::UNKNOWN)) {
        return "";
    }
    return LengthText(Bits(Unbuffered(spd).mod_thickness, high, low), 1, 15);
}

// Follows from the type of module.
std::string Width(const Spd& spd) {
    constexpr std::string_view WIDTHS[] = {
        "",        "133.35 mm", "133.35 mm", "67.6 mm", "not defined", "82.0 mm", "82.0 mm",
        "67.6 mm", "67.6 mm",   "67.6 mm",   "67.6 mm", "133.35 mm",   "67.6 mm", "67.6 mm",
    };
    return Is(spd, SpdLayout::UNKNOWN) ? "" : NameOf(spd.module_type, WIDTHS);
}

// The letters that cannot be taken for a digit or for another letter, alone and then
// in pairs: A to Y, AA to AY, and so on.
std::string RawCardName(unsigned number) {
    constexpr std::string_view LETTERS = "ABCDEFGHJKLMNPRTUVWY";
    const auto count = static_cast<unsigned>(LETTERS.size());
    std::string name;
    if (number >= count) {
        name += LETTERS[number / count - 1];
    }
    return name + LETTERS[number % count];
}

std::string RawCard(const Spd& spd) {
    if (Is(spd, SpdLayout::UNKNOWN)) {
        return "";
    }
    constexpr unsigned NONE = 31;
    const ddr3_spd_unbuffered_t section = Unbuffered(spd);
    const unsigned code = Bits(section.ref_raw_card, 4, 0);
    if (code == NONE) {
        return "ZZ (no reference design)";
    }
    const unsigned number = Bit(section.ref_raw_card, 7) ? NONE + code : code;
    std::string text =
        RawCardName(number) + " revision " + std::to_string(Bits(section.ref_raw_card, 6, 5));
    const unsigned extension = Bits(section.mod_height, 7, 5);
    if (extension != 0) {
        text += ", extension " + std::to_string(extension);
    }
    return text;
}

std::string Rank1Mapping(const Spd& spd) {
    if (!Is(spd, SpdLayout::UNBUFFERED)) {
        return "";
    }
    return Bit(Unbuffered(spd).addr_mapping, 0) ? "mirrored" : "standard";
}

std::string RegisterCount(const Spd& spd) {
    constexpr std::string_view COUNTS[] = {"", "1", "2", "4"};
    return Is(spd, SpdLayout::REGISTERED) ? NameOf(Bits(Registered(spd).modu_attr, 1, 0), COUNTS)
                                          : "";
}

std::string DramRows(const Spd& spd) {
    constexpr std::array<std::string_view, 4> ROWS{"", "1", "2", "4"};
    const unsigned code = Bits(Registered(spd).modu_attr, 3, 2);
    switch (LayoutOf(spd)) {
        case SpdLayout::REGISTERED:
            return NameOf(code, ROWS);
        case SpdLayout::LOAD_REDUCED:
            return NameOf(code, std::span(ROWS).first(3));
        default:
            return "";
    }
}

std::string HeatSpreader(const Spd& spd) {
    const ddr3_spd_registered_t section = Registered(spd);
    switch (LayoutOf(spd)) {
        case SpdLayout::REGISTERED: {
            const unsigned characteristics = Bits(section.thermal, 6, 0);
            return YesNo(Bit(section.thermal, 7)) +
                   (characteristics == 0 ? "" : ", characteristics " + Hex(characteristics));
        }
        case SpdLayout::LOAD_REDUCED:
            return YesNo(Bit(section.modu_attr, 7));
        default:
            return "";
    }
}

std::string RankMirroring(const Spd& spd) {
    constexpr std::string_view MIRRORED[] = {"none", "odd ranks"};
    return Is(spd, SpdLayout::LOAD_REDUCED)
               ? NameOf(Bits(Registered(spd).modu_attr, 1, 0), MIRRORED)
               : "";
}

std::string RankNumbering(const Spd& spd) {
    if (!Is(spd, SpdLayout::LOAD_REDUCED)) {
        return "";
    }
    return Bit(Registered(spd).modu_attr, 5) ? "even only" : "contiguous";
}

std::string BufferOrientation(const Spd& spd) {
    if (!Is(spd, SpdLayout::LOAD_REDUCED)) {
        return "";
    }
    return Bit(Registered(spd).modu_attr, 4) ? "horizontal" : "vertical";
}

std::string ChipMaker(const Spd& spd, SpdLayout layout) {
    const ddr3_spd_registered_t section = Registered(spd);
    return Is(spd, layout) ? MakerText(section.reg_id_lo, section.reg_id_hi) : "";
}

// 0x03 is revision 3, 0x31 is 3.1, 0xB1 is B1.
std::string ChipRevision(uint8_t revision) {
    const unsigned major = Bits(revision, 7, 4);
    const unsigned minor = Bits(revision, 3, 0);
    if (minor > 9) {
        return Hex(revision);
    }
    if (major > 9) {
        return std::string(1, static_cast<char>('A' + (major - 10))) + std::to_string(minor);
    }
    return (major == 0 ? "" : std::to_string(major) + ".") + std::to_string(minor);
}

std::string RegisterType(const Spd& spd) {
    constexpr std::string_view TYPES[] = {"SSTE32882"};
    return Is(spd, SpdLayout::REGISTERED) ? NameOf(Bits(Registered(spd).reg_type, 2, 0), TYPES)
                                          : "";
}

// Two words to a byte, the even one in its low nibble.
std::string ControlWords(const Spd& spd) {
    if (!Is(spd, SpdLayout::REGISTERED)) {
        return "";
    }
    std::string text;
    for (const uint8_t pair : Registered(spd).rcw) {
        text +=
            (text.empty() ? "" : " ") + Hex(Bits(pair, 3, 0), 1) + " " + Hex(Bits(pair, 7, 4), 1);
    }
    return text;
}

// The bytes of the section from `from` (counted in the SPD) on, when nothing above
// knows them and something stands in them.
std::string OtherBytes(const Spd& spd, SpdLayout layout, size_t from) {
    const auto rest = std::span(spd.mod_section).subspan(from - 60);
    if (!Is(spd, layout) || std::ranges::all_of(rest, [](uint8_t b) { return b == 0; })) {
        return "";
    }
    return HexBytes(rest, ' ');
}

constexpr CFieldDecoder<Spd> FIELDS[] = {
    {"Physical", "Height", Height},
    {"Physical", "Width", Width},
    {"Physical", "Front thickness", [](const Spd& spd) { return ThicknessOf(spd, 3, 0); }},
    {"Physical", "Back thickness", [](const Spd& spd) { return ThicknessOf(spd, 7, 4); }},
    {"Physical", "Reference raw card", RawCard},
    {"Physical", "Rank 1 address mapping", Rank1Mapping},
    {"Physical", "Registers", RegisterCount},
    {"Physical", "Rows of DRAM", DramRows},
    {"Physical", "Heat spreader", HeatSpreader},
    {"Physical", "Register maker",
     [](const Spd& spd) { return ChipMaker(spd, SpdLayout::REGISTERED); }},
    {"Physical", "Register revision",
     [](const Spd& spd) {
         return Is(spd, SpdLayout::REGISTERED) ? ChipRevision(Registered(spd).reg_rev) : "";
     }},
    {"Physical", "Register type", RegisterType},
    {"Physical", "Control words RC0-RC15", ControlWords},
    {"Physical", "Rank mirroring", RankMirroring},
    {"Physical", "Rank numbering", RankNumbering},
    {"Physical", "Buffer orientation", BufferOrientation},
    {"Physical", "Buffer maker",
     [](const Spd& spd) { return ChipMaker(spd, SpdLayout::LOAD_REDUCED); }},
    {"Physical", "Buffer revision",
     [](const Spd& spd) {
         return Is(spd, SpdLayout::LOAD_REDUCED) ? ChipRevision(Registered(spd).thermal) : "";
     }},
    {"Physical", "Bytes 60-116",
     [](const Spd& spd) { return OtherBytes(spd, SpdLayout::UNKNOWN, 60); }},
    {"Physical", "Bytes 63-116",
     [](const Spd& spd) { return OtherBytes(spd, SpdLayout::CLOCKED, 63); }},
    {"Physical", "Bytes 64-116",
     [](const Spd& spd) { return OtherBytes(spd, SpdLayout::UNBUFFERED, 64); }},
    {"Physical", "Bytes 67-116",
     [](const Spd& spd) { return OtherBytes(spd, SpdLayout::LOAD_REDUCED, 67); }},
    {"Physical", "Bytes 77-116",
     [](const Spd& spd) { return OtherBytes(spd, SpdLayout::REGISTERED, 77); }},
};

}  // namespace

CSpdFields SpdPhysicalFields() {
    return FIELDS;
}
