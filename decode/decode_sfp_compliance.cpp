#include "decode/decode_sfp_compliance.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "decode/field_text.h"

namespace {

using enum ESfpCompliance;

constexpr int FIRST_COMPLIANCE = 3;  // the byte of the record

struct CComplianceBit {
    int byte;  // of the record
    int bit;
    ESfpCompliance group;
    std::string_view name;
};

// Bits 4 and 3 of byte 4 are SfpSonetReach's.
constexpr CComplianceBit COMPLIANCES[] = {
    {3, 7, ETHERNET_10G, "10GBASE-ER"},
    {3, 6, ETHERNET_10G, "10GBASE-LRM"},
    {3, 5, ETHERNET_10G, "10GBASE-LR"},
    {3, 4, ETHERNET_10G, "10GBASE-SR"},
    {3, 3, INFINIBAND, "1X SX"},
    {3, 2, INFINIBAND, "1X LX"},
    {3, 1, INFINIBAND, "1X copper active"},
    {3, 0, INFINIBAND, "1X copper passive"},
    {4, 7, ESCON, "multimode 1310 nm LED"},
    {4, 6, ESCON, "single-mode 1310 nm laser"},
    {4, 5, SONET, "OC-192 short reach"},
    {4, 2, SONET, "OC-48 long reach"},
    {4, 1, SONET, "OC-48 intermediate reach"},
    {4, 0, SONET, "OC-48 short reach"},
    {5, 6, SONET, "OC-12 single-mode long reach"},
    {5, 5, SONET, "OC-12 single-mode intermediate reach"},
    {5, 4, SONET, "OC-12 short reach"},
    {5, 2, SONET, "OC-3 single-mode long reach"},
    {5, 1, SONET, "OC-3 single-mode intermediate reach"},
    {5, 0, SONET, "OC-3 short reach"},
    {6, 7, ETHERNET, "BASE-PX"},
    {6, 6, ETHERNET, "BASE-BX10"},
    {6, 5, ETHERNET, "100BASE-FX"},
    {6, 4, ETHERNET, "100BASE-LX/LX10"},
    {6, 3, ETHERNET, "1000BASE-T"},
    {6, 2, ETHERNET, "1000BASE-CX"},
    {6, 1, ETHERNET, "1000BASE-LX"},
    {6, 0, ETHERNET, "1000BASE-SX"},
    {7, 7, FC_LENGTH, "very long distance (V)"},
    {7, 6, FC_LENGTH, "short distance (S)"},
    {7, 5, FC_LENGTH, "intermediate distance (I)"},
    {7, 4, FC_LENGTH, "long distance (L)"},
    {7, 3, FC_LENGTH, "medium distance (M)"},
    {7, 2, FC_TECHNOLOGY, "shortwave laser with linear RX (SA)"},
    {7, 1, FC_TECHNOLOGY, "longwave laser (LC)"},
    {7, 0, FC_TECHNOLOGY, "electrical inter-enclosure (EL)"},
    {8, 7, FC_TECHNOLOGY, "electrical intra-enclosure (EL)"},
    {8, 6, FC_TECHNOLOGY, "shortwave laser without OFC (SN)"},
    {8, 5, FC_TECHNOLOGY, "shortwave laser with OFC (SL)"},
    {8, 4, FC_TECHNOLOGY, "longwave laser (LL)"},
    {8, 3, CABLE, "active"},
    {8, 2, CABLE, "passive"},
    {9, 7, FC_MEDIA, "twin axial pair (TW)"},
    {9, 6, FC_MEDIA, "twisted pair (TP)"},
    {9, 5, FC_MEDIA, "miniature coax (MI)"},
    {9, 4, FC_MEDIA, "video coax (TV)"},
    {9, 3, FC_MEDIA, "62.5 um multimode (M6)"},
    {9, 2, FC_MEDIA, "50 um multimode (M5/M5E)"},
    {9, 0, FC_MEDIA, "single-mode (SM)"},
    {10, 7, FC_SPEED, "1200 MB/s"},
    {10, 6, FC_SPEED, "800 MB/s"},
    {10, 5, FC_SPEED, "1600 MB/s"},
    {10, 4, FC_SPEED, "400 MB/s"},
    {10, 3, FC_SPEED, "3200 MB/s"},
    {10, 2, FC_SPEED, "200 MB/s"},
    {10, 1, FC_SPEED, "more in byte 62"},
    {10, 0, FC_SPEED, "100 MB/s"},
};

struct CBitName {
    int byte;  // of the record
    int bit;
    std::string_view name;
};

constexpr CBitName FC_SPEEDS_2[] = {{62, 0, "64GFC"}};

constexpr CBitName OPTIONS[] = {
    {64, 4, "paging"},
    {64, 3, "retimer or CDR"},
    {64, 2, "cooled laser"},
    {64, 0, "linear receiver output"},
    {65, 7, "receiver decision threshold"},
    {65, 6, "tunable transmitter"},
    {65, 5, "RATE_SELECT"},
    {65, 4, "TX_DISABLE"},
    {65, 3, "TX_FAULT"},
    {65, 2, "inverted RX_LOS"},
    {65, 1, "RX_LOS"},
};

// Bits of byte 64 that declare it.
constexpr uint8_t POWER_LEVEL_4 = 0x40;
constexpr uint8_t POWER_LEVEL_3 = 0x20;
constexpr uint8_t POWER_LEVEL_2 = 0x02;

constexpr CBitName ENHANCED_OPTIONS[] = {
    {93, 7, "alarm and warning flags"},
    {93, 6, "soft TX_DISABLE"},
    {93, 5, "soft TX_FAULT"},
    {93, 4, "soft RX_LOS"},
    {93, 3, "soft RATE_SELECT"},
    {93, 2, "application select (SFF-8079)"},
    {93, 1, "soft rate select (SFF-8431)"},
};

constexpr CBitName DIAGNOSTICS_TYPES[] = {
    {92, 6, "implemented"},      {92, 5, "internally calibrated"}, {92, 4, "externally calibrated"},
    {92, 3, "average RX power"}, {92, 2, "address change"},
};

// The limiting ones are of active cables only.
constexpr CBitName PASSIVE_CABLE[] = {
    {60, 1, "FC-PI-4 appendix H"},
    {60, 0, "SFF-8431 appendix E"},
};
constexpr CBitName ACTIVE_CABLE[] = {
    {60, 3, "FC-PI-4 limiting"},
    {60, 2, "SFF-8431 limiting"},
    {60, 1, "FC-PI-4 appendix H"},
    {60, 0, "SFF-8431 appendix E"},
};

constexpr bool IsSet(uint8_t byte, int bit) {
    return (byte >> bit & 1) != 0;
}

bool HasCompliance(const sfp_serial_id_t& id, int byte, int bit) {
    return IsSet(id.Transceiver[static_cast<size_t>(byte - FIRST_COMPLIANCE)], bit);
}

std::string Unnamed(int byte, int bit) {
    return "byte " + std::to_string(byte) + " bit " + std::to_string(bit);
}

// Every bit of `bytes`, which begin at byte `first` of the record, that is set.
std::vector<std::string> BitNames(std::span<const uint8_t> bytes, int first,
                                  std::span<const CBitName> names) {
    std::vector<std::string> set;
    int byte = first;
    for (const uint8_t value : bytes) {
        for (int bit = 7; bit >= 0; --bit) {
            if (!IsSet(value, bit)) {
                continue;
            }
            const auto found = std::find_if(
                names.begin(), names.end(),
                [byte, bit](const CBitName& n) { return n.byte == byte && n.bit == bit; });
            set.push_back(found == names.end() ? Unnamed(byte, bit) : std::string(found->name));
        }
        ++byte;
    }
    return set;
}

std::string ListedOrNone(const std::vector<std::string>& items) {
    return items.empty() ? "none" : Listed(items);
}

}  // namespace

std::string SfpCompliances(const sfp_serial_id_t& id, ESfpCompliance group) {
    std::vector<std::string> set;
    for (const CComplianceBit& compliance : COMPLIANCES) {
        if (compliance.group == group && HasCompliance(id, compliance.byte, compliance.bit)) {
            set.emplace_back(compliance.name);
        }
    }
    if (group == FC_SPEED && HasCompliance(id, 10, 1)) {
        const auto more = BitNames({&id.Unallocated, 1}, 62, FC_SPEEDS_2);
        set.insert(set.end(), more.begin(), more.end());
    }
    return Listed(set);
}

std::string SfpSonetReach(const sfp_serial_id_t& id) {
    struct CReach {
        std::array<uint8_t, 2> bits;                   // of bytes 4 and 5, whatever the rate
        std::array<std::string_view, 4> by_specifier;  // "bit 2", and "bit 1" twice as much
    };
    static constexpr CReach REACHES[] = {
        {{0x21, 0x11}, {"SR", "", "SR-1", ""}},
        {{0x02, 0x22}, {"", "IR-2", "IR-1", ""}},
        {{0x04, 0x44}, {"", "LR-2", "LR-1", "LR-3"}},
    };
    // The specifiers are called "bit 1" and "bit 2", and lie in bits 4 and 3.
    const size_t specifier = id.Transceiver[1] >> 3 & 3;
    std::vector<std::string> reaches;
    for (const CReach& reach : REACHES) {
        const std::string_view name = reach.by_specifier[specifier];
        if (((id.Transceiver[1] & reach.bits[0]) != 0 ||
             (id.Transceiver[2] & reach.bits[1]) != 0) &&
            !name.empty()) {
            reaches.emplace_back(name);
        }
    }
    return reaches.empty() && specifier != 0 ? Hex(specifier, 1) : Listed(reaches);
}

std::string SfpUnallocatedCompliances(const sfp_serial_id_t& id) {
    std::vector<std::string> set;
    for (const auto& [byte, bit] : {std::pair{5, 7}, {5, 3}, {8, 1}, {8, 0}, {9, 1}}) {
        if (HasCompliance(id, byte, bit)) {
            set.push_back(Unnamed(byte, bit));
        }
    }
    return Listed(set);
}

std::string SfpOptions(const sfp_serial_id_t& id) {
    auto options = id.Options;
    options[0] &= static_cast<uint8_t>(~(POWER_LEVEL_4 | POWER_LEVEL_3 | POWER_LEVEL_2));
    return ListedOrNone(BitNames(options, 64, OPTIONS));
}

std::string SfpPowerLevel(const sfp_serial_id_t& id) {
    // The greatest counts: a level may be declared with those below it.
    if ((id.Options[0] & POWER_LEVEL_4) != 0) {
        return "4 (more than 2 W)";
    }
    if ((id.Options[0] & POWER_LEVEL_3) != 0) {
        return "3 (2 W)";
    }
    return (id.Options[0] & POWER_LEVEL_2) != 0 ? "2 (1.5 W)" : "1 (1 W)";
}

std::string SfpEnhancedOptions(const sfp_serial_id_t& id) {
    return ListedOrNone(BitNames({&id.Enhanced_Options, 1}, 93, ENHANCED_OPTIONS));
}

std::string SfpDiagnosticsType(const sfp_serial_id_t& id) {
    return ListedOrNone(BitNames({&id.Diagnostic_Monitoring_Type, 1}, 92, DIAGNOSTICS_TYPES));
}

std::string SfpCableCompliance(const sfp_serial_id_t& id) {
    const auto names = HasCompliance(id, 8, 2) ? std::span<const CBitName>(PASSIVE_CABLE)
                                               : std::span<const CBitName>(ACTIVE_CABLE);
    return ListedOrNone(BitNames(id.Wavelength, 60, names));
}
